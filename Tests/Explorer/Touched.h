// What a move touched, as far as another one can see it.
//
// Threading: plain values.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>

namespace hlv::testing {

/// Two moves of which neither writes what the other reads or writes may change places, and nobody
/// can see which came first.
struct Touched {
  static constexpr std::size_t ownersAtMost = 10, callsAtMost = 14;
  using Things = std::bitset<256>;

  enum Thing : std::size_t {
    /// Which operation is next, and how many interferences are left.
    nextOperation,
    interferences,
    /// Of the one guest that every operation gets.
    guestToken,
    /// With the flag that the manager keeps of it.
    network,
    /// Who holds them; with the synchroniser, the kit.
    manager,
    synchronizer,
    /// The synchroniser's flag.
    synchronizing,
    /// A queue that is not empty has two ends.
    mainBegin,
    mainEnd,
    serialBegin,
    serialEnd,
    firstOfOwner
  };
  /// An owner is an operation, or a notification that may start a synchronisation, or what only
  /// counts as its answer: by the last digit. What it has: a join or a chain of callbacks, the
  /// cards that its synchronisation fetches, its number of calls.
  static Thing chainOf(std::size_t owner) { return of(owner, 0); }
  static Thing cardsOf(std::size_t owner) { return of(owner, 1); }
  static Thing callsOf(std::size_t owner) { return of(owner, 2); }
  /// A call, by the number that is the same in every history.
  static Thing call(std::size_t id) { return Thing(firstOfOwner + 3 * ownersAtMost + id); }
  static std::size_t idOfCall(std::size_t owner, std::size_t number) {
    return owner * callsAtMost + number;
  }

  static Thing of(std::size_t owner, std::size_t which) {
    return Thing(firstOfOwner + 3 * (owner % ownersAtMost) + which);
  }

  Things reads, writes;

  template <class... Of>
  void write(Of... things) {
    (writes.set(things), ...);
  }
  template <class... Of>
  void read(Of... things) {
    (reads.set(things), ...);
  }
  void add(const Touched& other) {
    reads |= other.reads;
    writes |= other.writes;
  }
  bool meets(const Touched& other) const {
    return (writes & (other.reads | other.writes)).any() || (reads & other.writes).any();
  }
};

/// Makes one number of two.
inline std::uint64_t mixed(std::uint64_t one, std::uint64_t other) {
  one = (one ^ other) * 0x9E3779B97F4A7C15U;
  return one ^ (one >> 29);
}

}  // namespace hlv::testing
