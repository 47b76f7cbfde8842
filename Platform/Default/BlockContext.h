// Where posted blocks wait: the queue library, behind a face of our own. Private to this folder.
#pragma once

#include <asio/io_context.hpp>
#include <asio/post.hpp>
#include <asio/strand.hpp>
#include <atomic>
#include <cstddef>

namespace hlv {

/// Threading: any; `abandon` once nothing runs any more.
class BlockContext : public asio::io_context {
 public:
  /// Frees the blocks that never ran, and with them what they hold. A block may hold the queue it
  /// waits on, which holds this context, so without this the two would keep each other.
  void abandon() { shutdown(); }

  /// Blocks that were posted and have not finished.
  std::atomic<std::size_t> unfinished{0};
};

}  // namespace hlv
