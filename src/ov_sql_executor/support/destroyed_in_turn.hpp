#ifndef OV_SQL_EXECUTOR_SUPPORT_DESTROYED_IN_TURN_HPP_
#define OV_SQL_EXECUTOR_SUPPORT_DESTROYED_IN_TURN_HPP_

#include <cstddef>
#include <memory>
#include <utility>

namespace ov::sql_executor {

// Counts the parts of other classes that are being destroyed on this thread, one inside another. What such a part owns
// is destroyed with it: it does not join the queue of the part outside.
inline thread_local std::size_t foreign_parts_in_destruction = 0;

// A part of a tree that is destroyed after its owner, so that trees of any depth can be destroyed on any stack. Base is
// what the owner knows of its parts, which it holds as owned_part.
template <class Base>
class destroyed_in_turn : public Base {
 public:
  // Destroys this part, or queues it while the part that owns it is being destroyed. The parts of a part go before
  // those that are queued already, in the order in which it releases them.
  void destroy() noexcept {
    if (queue_.end != nullptr && queue_.foreign_parts == foreign_parts_in_destruction) {
      *queue_.end = this;
      queue_.end = &next_;
      return;
    }
    const part_queue outer = std::exchange(queue_, {nullptr, foreign_parts_in_destruction});
    for (destroyed_in_turn* next = this; next != nullptr;) {
      destroyed_in_turn* const rest = next->next_;
      destroyed_in_turn* parts = nullptr;
      queue_.end = &parts;
      delete next;
      *queue_.end = rest;
      next = parts;
    }
    queue_ = outer;
  }

 private:
  // The queue of the part that is being destroyed.
  struct part_queue {
    destroyed_in_turn** end = nullptr;  // null where none is being destroyed
    std::size_t foreign_parts = 0;      // foreign_parts_in_destruction when that began
  };
  static inline thread_local part_queue queue_;

  destroyed_in_turn* next_ = nullptr;
};

// Owns a part. A part of this library, of class Own, is destroyed in turn; any other is destroyed at once.
template <class Base, class Own>
class owned_part {
 public:
  explicit owned_part(std::unique_ptr<Base> part) : part_(nullptr, destroyer{dynamic_cast<Own*>(part.get())}) {
    part_.reset(part.release());
  }

  const Base& operator*() const { return *part_; }
  const Base* operator->() const { return part_.get(); }

  // Null for a part of another class.
  const Own* own() const { return part_.get_deleter().own; }

 private:
  struct destroyer {
    Own* own;

    void operator()(Base* part) const noexcept {
      if (own != nullptr) {
        own->destroy();
      } else {
        ++foreign_parts_in_destruction;
        delete part;
        --foreign_parts_in_destruction;
      }
    }
  };

  std::unique_ptr<Base, destroyer> part_;
};

}  // namespace ov::sql_executor

#endif  // OV_SQL_EXECUTOR_SUPPORT_DESTROYED_IN_TURN_HPP_
