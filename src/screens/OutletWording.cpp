#include "screens/OutletWording.h"

namespace quillon::screens {

std::string outletStateSentence(const OutletState& state) {
    if (state.detail.empty())
        return state.headline;
    // A failure's reason reads as an explanation; anything else continues the headline.
    return state.headline + (state.failing ? ": " : " ") + state.detail;
}

std::string outletStatusLine(const OutletStatus& status) {
    return status.name + ": " + outletStateSentence(status.state);
}

std::string outletHeadline(const OutletStatus& status) {
    return status.name + ": " + status.state.headline;
}

std::vector<std::string> outletDetails(const OutletStatus& status) {
    const std::string sentence = outletStateSentence(status.state);
    std::vector<std::string> lines;
    if (!status.state.address.empty() && sentence.find(status.state.address) == std::string::npos)
        lines.push_back("at " + status.state.address);
    if (!status.state.failing && !status.state.lastFailure.empty())
        lines.push_back("last failure: " + status.state.lastFailure);
    return lines;
}

} // namespace quillon::screens
