#pragma once

#include "screens/OutletState.h"
#include "screens/ScreenOutlet.h"

#include <memory>
#include <string>
#include <vector>

namespace quillon::screens {

/// Every outlet the preacher switched on, told together of each announcement and clear.
class OutletHub {
public:
    using Status = OutletStatus;

    void add(std::shared_ptr<ScreenOutlet> outlet);
    void show(const mesh::LiveScripture& scripture);
    void clear();
    std::vector<Status> statuses() const;
    bool empty() const { return m_outlets.empty(); }

private:
    std::vector<std::shared_ptr<ScreenOutlet>> m_outlets;
};

} // namespace quillon::screens
