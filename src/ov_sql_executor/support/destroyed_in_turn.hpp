#ifndef OV_SQL_EXECUTOR_SUPPORT_DESTROYED_IN_TURN_HPP_
#define OV_SQL_EXECUTOR_SUPPORT_DESTROYED_IN_TURN_HPP_

#include <cstddef>
#include <memory>
#include <utility>

namespace ov::sql_executor {

// How many parts that are not of this library are being destroyed on this thread, one within another. What they own
// goes before they do: it does not wait with the parts of what owns them.
inline thread_local std::size_t others_in_destruction = 0;

// A part of a tree that waits to be destroyed until the part that owned it is gone, so that trees of any depth can be
// destroyed on any stack. Base is what the owner knows of its parts, which it has as owned_part.
template <class Base>
class destroyed_in_turn : public Base {
 public:
  // The parts of a part go before those that wait already, in the order in which it lets go of them.
  void destroy() noexcept {
    if (waiting_.end != nullptr && waiting_.others == others_in_destruction) {
      *waiting_.end = this;
      waiting_.end = &next_;
      return;
    }
    const waiting_parts outer = std::exchange(waiting_, {nullptr, others_in_destruction});
    for (destroyed_in_turn* next = this; next != nullptr;) {
      destroyed_in_turn* const rest = next->next_;
      destroyed_in_turn* parts = nullptr;
      waiting_.end = &parts;
      delete next;
      *waiting_.end = rest;
      next = parts;
    }
    waiting_ = outer;
  }

 private:
  // The parts of the part that is being destroyed.
  struct waiting_parts {
    destroyed_in_turn** end = nullptr;  // null where none is being destroyed
    std::size_t others = 0;             // others_in_destruction when that began
  };
  static inline thread_local waiting_parts waiting_;

  destroyed_in_turn* next_ = nullptr;
};

// Owns a part: one of this library, of class Own, or any other, which is destroyed at once.
template <class Base, class Own>
class owned_part {
 public:
  explicit owned_part(std::unique_ptr<Base> part) : part_(nullptr, destroyer{dynamic_cast<Own*>(part.get())}) {
    part_.reset(part.release());
  }

  const Base& operator*() const { return *part_; }
  const Base* operator->() const { return part_.get(); }

  // Null for any other.
  const Own* own() const { return part_.get_deleter().own; }

 private:
  struct destroyer {
    Own* own;

    void operator()(Base* part) const noexcept {
      if (own != nullptr) {
        own->destroy();
      } else {
        ++others_in_destruction;
        delete part;
        --others_in_destruction;
      }
    }
  };

  std::unique_ptr<Base, destroyer> part_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_SUPPORT_DESTROYED_IN_TURN_HPP_
