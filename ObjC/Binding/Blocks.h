// Completion blocks as the core's completions.
//
// Threading: any; a block is called on the thread that calls the completion.
#pragma once

#include <Block.h>

#include <functional>
#include <type_traits>
#include <utility>

#include "ObjC/Binding/Crossing.h"

namespace hlv::objc {

/// A block, copied to the heap and counted. Blocks are no objects in every runtime, so they are
/// neither sent messages nor kept in collections.
template <class Block>
class CopiedBlock {
 public:
  explicit CopiedBlock(Block block) : block_(Block_copy(block)) {}
  CopiedBlock(const CopiedBlock& other) : block_(Block_copy(other.block_)) {}
  CopiedBlock& operator=(const CopiedBlock&) = delete;
  ~CopiedBlock() { Block_release(block_); }
  Block block() const { return block_; }

 private:
  const Block block_;
};

/// What a completion holds that was made of a block, whatever the results: one class for all.
struct BlockCompletion {
  CopiedBlock<void*> copied;
  template <class... Results>
  void operator()(const Results&... results) const {
    using Block = void (^)(decltype(crossing(results))...);
    reinterpret_cast<Block>(copied.block())(crossing(results)...);
  }
};

template <class Block, class... Results>
[[gnu::noinline]] std::function<void(Results...)> completionAs(
    Block block, const std::function<void(Results...)>*) {
  static_assert(std::is_invocable_v<Block, decltype(crossing(std::declval<Results>()))...>);
  if (!block) return nullptr;
  return BlockCompletion{CopiedBlock<void*>(reinterpret_cast<void*>(block))};
}

/// `block` as a completion of the core; nil is an empty one.
template <class Completion, class Block>
Completion completion(Block block) {
  return completionAs(block, static_cast<const Completion*>(nullptr));
}

/// The very block that a completion was made of; nil for any other.
template <class Block, class... Results>
Block originalBlock(const std::function<void(Results...)>& completion) {
  const auto* made = completion.template target<BlockCompletion>();
  return reinterpret_cast<Block>(made ? made->copied.block() : nullptr);
}

}  // namespace hlv::objc
