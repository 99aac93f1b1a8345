#ifndef OVSQL_INTERACTIVE_LINE_EDITOR_HPP_
#define OVSQL_INTERACTIVE_LINE_EDITOR_HPP_

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct editline;
struct history;

namespace shell {

// What may stand for the word that ends at the cursor.
struct completion {
  std::size_t length = 0;  // of the word, in bytes
  std::vector<std::string> candidates = {};
};

// Reads lines from the terminal, with editing, history and completion.
class line_editor {
 public:
  // history_file: read now and written at the end; empty for none. complete: is given the line up to the cursor.
  line_editor(std::string history_file, std::function<completion(std::string_view before_cursor)> complete);
  ~line_editor();
  line_editor(const line_editor&) = delete;
  line_editor& operator=(const line_editor&) = delete;

  // Returns a line without its end; nothing at the end of the input. After Ctrl-C the line is empty and cancelled.
  std::optional<std::string> read(const std::string& prompt);
  bool cancelled() const { return cancelled_; }

  // Adds to the history what a user may want to have again.
  void remember(const std::string& entry);

 private:
  static char* show_prompt(editline* of);
  static unsigned char cancel(editline* of, int key);
  static unsigned char complete(editline* of, int key);
  static unsigned char suspend(editline* of, int key);
  static line_editor& self(editline* of);
  unsigned char complete_word();
  void show(const std::vector<std::string>& candidates) const;
  void bind_keys();

  std::string history_file_;
  std::function<completion(std::string_view)> complete_;
  std::string prompt_;
  bool cancelled_ = false;
  editline* editor_;
  history* history_;
};

}  // namespace shell

#endif  // OVSQL_INTERACTIVE_LINE_EDITOR_HPP_
