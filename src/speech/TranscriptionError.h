#pragma once

#include <stdexcept>
#include <string>

namespace quillon::speech {

/// Why a recording could not be transcribed: a sentence for the preacher ("Quillon could not read
/// audio from “x.m4a”.").
class TranscriptionError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace quillon::speech
