#pragma once

#include <stdexcept>

namespace quillon::store {

/// A backup or restore that cannot go ahead; what() is the sentence shown to the user.
class BackupError : public std::runtime_error {
public:
    enum class Kind { noSermonsToBackUp, encodingFailed, sermonsFileMissing };

    explicit BackupError(Kind kind);
    Kind kind() const { return m_kind; }
    static const char* description(Kind kind);

private:
    Kind m_kind;
};

} // namespace quillon::store
