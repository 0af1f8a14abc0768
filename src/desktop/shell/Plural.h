#pragma once

#include <QString>

namespace quillon::desktop {

/// "1 sermon", "3 sermons": `one` and `many` hold "%1" for the number.
inline QString counted(long long n, const QString& one, const QString& many) {
    return (n == 1 ? one : many).arg(n);
}

} // namespace quillon::desktop
