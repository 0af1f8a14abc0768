#pragma once

#include "mesh/ScriptureBridge.h"
#include "screens/OutletState.h"

#include <string>

namespace quillon::screens {

/// One program outside the mesh that shows the live passage (a web page, a projection program, a
/// Bible program). show() and clear() are called on the application's main thread and must return
/// at once: the outlet does its network work elsewhere and never delays the mesh.
class ScreenOutlet {
public:
    virtual ~ScreenOutlet() = default;

    virtual void show(const mesh::LiveScripture& scripture) = 0;
    virtual void clear() = 0;
    /// The outlet's name in status lines ("live page").
    virtual std::string name() const = 0;
    /// What the outlet is doing ("serving http://127.0.0.1:7316/", "off"); safe from any thread.
    virtual OutletState state() const = 0;
};

} // namespace quillon::screens
