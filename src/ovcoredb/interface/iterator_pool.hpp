// The iterators of one context, open ones and others.
#ifndef OVCOREDB_INTERFACE_ITERATOR_POOL_HPP_
#define OVCOREDB_INTERFACE_ITERATOR_POOL_HPP_

#include <memory>
#include <vector>

#include "ovcoredb/interface/iterator_state.hpp"
#include "ovcoredb/storage/own_lines.hpp"

namespace ovcoredb {

class iterator_pool {
 public:
  explicit iterator_pool(context_state& owner) : owner_(owner) {}

  // Prefers one that has walked this index before, since it knows where its objects lie. Null: there are too many, in
  // the context or in the process. Throws: std::bad_alloc.
  iterator_state* open(const ordered_index& index);

  // Requires: the iterator is open.
  void close(iterator_state& iterator);

  // Closes all, and forgets what they know of the database.
  void reset();

 private:
  // These two are out of line, which keeps opening an iterator again short.
  [[gnu::noinline]] void put_best_last(const ordered_index& index);
  [[gnu::noinline]] bool add();

  context_state& owner_;
  std::vector<std::unique_ptr<iterator_state>> all_;
  std::vector<iterator_state*, own_lines_allocator<iterator_state*>> closed_;  // has room for all
  bool is_used_ = false;                                                       // since the last reset
};

}  // namespace ovcoredb

#endif  // OVCOREDB_INTERFACE_ITERATOR_POOL_HPP_
