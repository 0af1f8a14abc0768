#include "platform/SecretStore.h"

#include "platform/AtomicFile.h"
#include "platform/Paths.h"

#include <libsecret/secret.h>
#include <nlohmann/json.hpp>
#include <spdlog/spdlog.h>

#include <cstdlib>
#include <sys/stat.h>

namespace quillon::platform {
namespace fs = std::filesystem;

namespace {

const SecretSchema* schema() {
    // The service goes in as an attribute, so one schema serves every service name.
    static const SecretSchema value = [] {
        SecretSchema made{};
        made.name = "io.veltra.qln.Secret";
        made.flags = SECRET_SCHEMA_DONT_MATCH_NAME;
        made.attributes[0] = {"service", SECRET_SCHEMA_ATTRIBUTE_STRING};
        made.attributes[1] = {"account", SECRET_SCHEMA_ATTRIBUTE_STRING};
        return made;
    }();
    return &value;
}

bool sessionBusLikelyPresent() {
    // Without a session bus GLib would try to autolaunch one through X11; do not let it try.
    if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address && *address)
        return true;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code ignored;
    return runtime && *runtime && fs::exists(fs::path(runtime) / "bus", ignored);
}

bool secretServiceAnswers() {
    if (!sessionBusLikelyPresent())
        return false;
    GError* error = nullptr;
    SecretService* service = secret_service_get_sync(SECRET_SERVICE_NONE, nullptr, &error);
    if (error) {
        g_error_free(error);
        return false;
    }
    if (service)
        g_object_unref(service);
    return service != nullptr;
}

std::string takeError(GError* error) {
    std::string text = error && error->message ? error->message : "unknown error";
    if (error)
        g_error_free(error);
    return text;
}

} // namespace

SecretStore::SecretStore(std::string service, fs::path fallbackFile, Backend backend)
    : m_service(std::move(service)), m_file(std::move(fallbackFile)) {
    m_useSecretService = backend == Backend::automatic && secretServiceAnswers();
    if (!m_useSecretService)
        spdlog::debug("Secrets for {} are kept in {} (no Secret Service)", m_service, m_file.string());
}

fs::path SecretStore::defaultFallbackFile(const std::string& service) {
    return applicationDataFolder() / "secrets" / (service + ".json");
}

std::optional<std::string> SecretStore::read(const std::string& account) const {
    std::lock_guard lock(m_mutex);
    if (!m_useSecretService)
        return readFileLocked(account);
    GError* error = nullptr;
    gchar* password = secret_password_lookup_sync(schema(), nullptr, &error, "service", m_service.c_str(), "account",
                                                  account.c_str(), nullptr);
    if (error) {
        spdlog::error("Could not read the secret {} from the Secret Service: {}", account, takeError(error));
        return std::nullopt;
    }
    if (!password)
        return std::nullopt;
    std::string value = password;
    secret_password_free(password);
    return value;
}

bool SecretStore::write(const std::string& account, const std::string& secret) {
    std::lock_guard lock(m_mutex);
    if (!m_useSecretService)
        return writeFileLocked(account, secret);
    GError* error = nullptr;
    std::string label = m_service + " " + account;
    gboolean stored =
        secret_password_store_sync(schema(), SECRET_COLLECTION_DEFAULT, label.c_str(), secret.c_str(), nullptr, &error,
                                   "service", m_service.c_str(), "account", account.c_str(), nullptr);
    if (error || !stored) {
        spdlog::error("Could not save the secret {} to the Secret Service: {}", account, takeError(error));
        return false;
    }
    return true;
}

bool SecretStore::remove(const std::string& account) {
    std::lock_guard lock(m_mutex);
    if (!m_useSecretService)
        return writeFileLocked(account, std::nullopt);
    GError* error = nullptr;
    secret_password_clear_sync(schema(), nullptr, &error, "service", m_service.c_str(), "account", account.c_str(),
                               nullptr);
    if (error) {
        spdlog::error("Could not remove the secret {} from the Secret Service: {}", account, takeError(error));
        return false;
    }
    return true;
}

std::optional<std::string> SecretStore::readFileLocked(const std::string& account) const {
    std::error_code missing;
    if (!fs::exists(m_file, missing))
        return std::nullopt;
    try {
        auto all = nlohmann::json::parse(readFile(m_file));
        auto found = all.find(account);
        if (found == all.end() || !found->is_string())
            return std::nullopt;
        return found->get<std::string>();
    } catch (const std::exception& failure) {
        spdlog::error("Could not read the secrets file {}: {}", m_file.string(), failure.what());
        return std::nullopt;
    }
}

bool SecretStore::writeFileLocked(const std::string& account, const std::optional<std::string>& secret) {
    try {
        nlohmann::json all = nlohmann::json::object();
        std::error_code missing;
        if (fs::exists(m_file, missing)) {
            all = nlohmann::json::parse(readFile(m_file));
            if (!all.is_object())
                all = nlohmann::json::object();
        }
        if (secret)
            all[account] = *secret;
        else
            all.erase(account);
        fs::create_directories(m_file.parent_path());
        // The folder keeps others out even during the moment the temporary file exists.
        fs::permissions(m_file.parent_path(), fs::perms::owner_all, fs::perm_options::replace);
        writeFileAtomically(m_file, all.dump(2) + "\n", [](const fs::path& temporary) {
            fs::permissions(temporary, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::replace);
        });
        return true;
    } catch (const std::exception& failure) {
        spdlog::error("Could not save the secrets file {}: {}", m_file.string(), failure.what());
        return false;
    }
}

} // namespace quillon::platform
