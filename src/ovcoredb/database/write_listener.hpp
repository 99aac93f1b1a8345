// Who is told of writes to a database.
#ifndef OVCOREDB_DATABASE_WRITE_LISTENER_HPP_
#define OVCOREDB_DATABASE_WRITE_LISTENER_HPP_

namespace ovcoredb {

class write_listener {
 public:
  write_listener() = default;
  write_listener(const write_listener&) = delete;
  write_listener& operator=(const write_listener&) = delete;
  virtual ~write_listener() = default;

  // Called before anything changes: positions in indexes and addresses of values are valid until then.
  virtual void before_write() = 0;
};

}  // namespace ovcoredb

#endif  // OVCOREDB_DATABASE_WRITE_LISTENER_HPP_
