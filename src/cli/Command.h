#pragma once

#include <CLI/CLI.hpp>

#include <filesystem>
#include <iosfwd>
#include <optional>
#include <stdexcept>
#include <string>

namespace quillon::cli {

/// Options every command understands, and the streams it writes to (injectable for tests).
struct CommandContext {
    std::ostream& out;
    std::ostream& err;
    /// --library DIR: the storage root for this run instead of the preferences' choice.
    std::optional<std::filesystem::path> library;
    /// --json: machine-readable output on stdout.
    bool json = false;
};

/// A failure to report to the user: the sentence goes to stderr and the exit status is 1.
class UserError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One `quillon` subcommand. `configure` declares its options on its own CLI11 subcommand;
/// `execute` runs after parsing and returns the exit status (or throws UserError).
class Command {
public:
    virtual ~Command() = default;
    virtual std::string name() const = 0;
    virtual std::string description() const = 0;
    virtual void configure(CLI::App& command) = 0;
    virtual int execute(CommandContext& context) = 0;
};

} // namespace quillon::cli
