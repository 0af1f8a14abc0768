#pragma once

#include <cstddef>
#include <functional>

namespace quillon::platform {

/// Most threads parallelFor uses: the work it serves (decoding sermon files) gains little beyond a
/// few cores, and the interface must stay responsive while it runs.
inline constexpr unsigned parallelForThreadLimit = 4;

/// Runs `body(index)` once for every index below `count` on a small pool of threads (the calling
/// thread included), as many as the machine has cores up to parallelForThreadLimit, and returns
/// when all are done. Indexes are handed out in ascending order; the caller keeps per-index
/// results so that their order does not depend on the timing.
///
/// When bodies throw, the remaining indexes are not started and the exception of the lowest
/// failing index is rethrown once every thread has stopped. When no thread can be started, the
/// calling thread does all the work.
void parallelFor(std::size_t count, const std::function<void(std::size_t)>& body);

} // namespace quillon::platform
