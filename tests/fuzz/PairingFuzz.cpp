// Pairing runs between strangers on the network: hello, challenge and response envelopes, the
// identity a TLS client offers, and the pairing records read back from the secret store. None of
// them may crash the desk, and no answer a peer makes up passes a challenge it was not given.
#include "FuzzInput.h"

#include "mesh/SermonStudioMessage.h"
#include "mesh/SuiteMeshPairingStore.h"
#include "mesh/VantalinkPsk.h"
#include "orvane/SuiteChallengeLedger.h"
#include "orvane/SuiteCrypto.h"
#include "orvane/SuiteMeshBootstrapSession.h"
#include "platform/Preferences.h"
#include "platform/SecretStore.h"

namespace {

using namespace quillon;
using fuzz::require;

const auto now = std::chrono::system_clock::time_point(std::chrono::seconds(1'800'000'000));

void checkResponse(const mesh::SermonStudioMessage& message) {
    // One ledger per input: challenges issued and never answered would otherwise pile up.
    orvane::SuiteChallengeLedger ledger([] { return now; });
    const orvane::SuitePairing pairing{"Brenmoor", orvane::SuiteCapability::grantedAtPairing(), orvane::Bytes(32, 7),
                                       now};
    const auto issued = ledger.issue(orvane::SuiteCapability::grantedAtPairing());
    const auto nonce = orvane::base64Decode(message.field("nonce"));
    const auto answer = orvane::base64Decode(message.field("answer"));
    const std::string name = message.field("name");
    if (nonce && answer)
        require(ledger.verify(*nonce, name, *answer, pairing, now).has_value());
    if (answer) {
        const bool right = *answer == orvane::SuiteHandshake::answer(pairing.secret, issued.nonce, name,
                                                                     orvane::SuiteCapability::grantedAtPairing());
        require(ledger.verify(issued.nonce, name, *answer, pairing, now).has_value() != right);
    }
}

void checkChallenge(const mesh::SermonStudioMessage& message) {
    const auto salt = orvane::base64Decode(message.field("salt"));
    if (salt)
        require(orvane::SuiteMeshBootstrapSession::deriveSecret(message.field("code"), *salt, "com.quillon").size() ==
                32);
}

void checkStoredRecord(std::string_view record) {
    static const fuzz::ScratchFolder folder("quillon-fuzz-pairing");
    static platform::SecretStore secrets("fuzz", folder.path() / "secrets.json",
                                         platform::SecretStore::Backend::fileOnly);
    static platform::Preferences preferences = platform::Preferences::inMemory();
    static mesh::SuiteMeshPairingStore store(secrets, preferences);
    if (!secrets.write("peer", std::string(record)))
        return;
    if (const auto pairing = store.pairing("peer"))
        require(pairing->secret.size() == 32);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::text(data, size);
    if (const auto message = mesh::SermonStudioMessage::decode(text)) {
        checkResponse(*message);
        checkChallenge(*message);
    }
    require(mesh::VantalinkPsk::unpairedKey(text).size() == 32);
    checkStoredRecord(text);
    return 0;
}
