#pragma once

#include <stdexcept>
#include <string>

namespace quillon::exports {

/// An export or import that could not be completed; what() is the sentence shown to the user
/// ("Quillon could not create the Word document.").
class ExportError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace quillon::exports
