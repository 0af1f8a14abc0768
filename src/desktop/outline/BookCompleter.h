#pragma once

class QCompleter;
class QObject;
class QString;
class QWidget;

namespace quillon::desktop {

/// Completes the Bible's book names as a reference is typed ("1 co" → "1 Corinthians"), in any case.
QCompleter* bookCompleter(QObject* parent);

/// Asks for a reference to add ("Add Scripture"), completing book names; empty when cancelled.
QString askForReference(QWidget* parent);

} // namespace quillon::desktop
