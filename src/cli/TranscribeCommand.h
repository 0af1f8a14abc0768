#pragma once

#include "cli/Desk.h"

#include <string>

namespace quillon::cli {

/// `quillon transcribe AUDIO [--organize]`: turns a sermon recording into a
/// draft sermon in the library, printing each stage and the messages the desk
/// publishes ("Transcription Ready", "Draft Created", "Draft Organized", or
/// "Transcription Failed").
class TranscribeCommand final : public DeskCommand {
public:
    std::string name() const override { return "transcribe"; }
    std::string description() const override { return "Turn a sermon recording into a draft sermon"; }
    void configure(CLI::App& command) override;

protected:
    int runOnDesk(CommandContext& context, Desk& desk) override;

private:
    std::string m_audio;
    bool m_organize = false;
};

} // namespace quillon::cli
