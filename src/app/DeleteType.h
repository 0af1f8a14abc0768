#pragma once

namespace quillon::app {

/// The kind of outline item whose deletion waits for the user's confirmation.
enum class DeleteType { topic, subTopic, scripture };

} // namespace quillon::app
