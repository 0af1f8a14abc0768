#include "desktop/sheets/RelativeTime.h"

#include "desktop/shell/Plural.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLocale>

namespace quillon::desktop {

QString relativeTime(model::DateTime when, model::DateTime now) {
    const auto seconds = (now - when).count();
    const auto minutes = seconds / 60;
    const auto hours = minutes / 60;
    const auto days = hours / 24;
    auto tr = [](const char* text) { return QCoreApplication::translate("RelativeTime", text); };
    if (minutes < 1)
        return tr("Just now");
    if (hours < 1)
        return counted(minutes, tr("%1 minute ago"), tr("%1 minutes ago"));
    if (days < 1)
        return counted(hours, tr("%1 hour ago"), tr("%1 hours ago"));
    if (days == 1)
        return tr("Yesterday");
    return counted(days, tr("%1 day ago"), tr("%1 days ago"));
}

QString localDateTime(model::DateTime when) {
    QDateTime time = QDateTime::fromSecsSinceEpoch(when.time_since_epoch().count()).toLocalTime();
    return QLocale().toString(time, QLocale::ShortFormat);
}

} // namespace quillon::desktop
