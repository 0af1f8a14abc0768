#pragma once

#include <stdexcept>
#include <string>

namespace quillon::platform {

/// A file the program owns could not be read or written; what() is a sentence a person can read.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace quillon::platform
