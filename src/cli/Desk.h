#pragma once

#include "app/OutlineAddress.h"
#include "app/SermonNotesViewModel.h"
#include "cli/Command.h"
#include "cli/Library.h"
#include "cli/LibraryCommand.h"

#include <nlohmann/json.hpp>

#include <memory>
#include <string>
#include <string_view>

namespace quillon::cli {

/// The editing controller over one run's library, remembering the last message it published so
/// the command can print it.
class Desk final : private app::SermonNotesListener {
public:
    explicit Desk(Library& library);
    ~Desk() override;
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;

    app::SermonNotesViewModel& controller() { return *m_controller; }
    Library& library() { return m_library; }
    /// The sermon named by a full id or a unique prefix; throws UserError.
    const model::SermonNote& sermon(std::string_view idText) const { return m_library.find(idText); }
    /// The outline item `address` names ("2", "2.1", "2.1.3" or an id prefix); throws UserError,
    /// also when it names an item of another kind than `kind` (when given).
    app::OutlineLocation item(const model::SermonNote& sermon, std::string_view address,
                              std::optional<app::DeleteType> kind = std::nullopt) const;

    /// Prints the last message: title and detail on stdout for a toast, on stderr for an alert;
    /// with --json one object on stdout with `extra`'s members after them. Returns the exit
    /// status: 0 after a toast, 1 after an alert or when nothing was published.
    int report(CommandContext& context, const nlohmann::ordered_json& extra = nlohmann::ordered_json::object()) const;
    /// Asks the controller's deletion question (see confirm()) and deletes the item when agreed.
    int deleteOutlineItem(CommandContext& context, const app::OutlineLocation& location, bool yes);
    /// The JSON members naming an item added to `sermonId`: its id and its number in `show`.
    nlohmann::ordered_json addedItem(const model::Uuid& sermonId, const model::Uuid& itemId) const;

private:
    void statusPosted(const app::StatusMessage& message) override { m_last = message; }

    Library& m_library;
    std::unique_ptr<exports::VerseTextSource> m_verses;
    std::unique_ptr<app::SermonNotesViewModel> m_controller;
    std::optional<app::StatusMessage> m_last;
};

/// Base of the commands that work through the editing controller.
class DeskCommand : public LibraryCommand {
protected:
    int run(CommandContext& context, Library& library) final;
    virtual int runOnDesk(CommandContext& context, Desk& desk) = 0;
};

/// Prints `question` and asks it before something is removed or replaced. With `yes` the answer
/// is given; without a terminal to ask on, the answer is no and stderr says how to confirm.
bool confirm(CommandContext& context, const std::string& question, bool yes);

} // namespace quillon::cli
