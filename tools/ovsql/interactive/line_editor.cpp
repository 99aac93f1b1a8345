#include "interactive/line_editor.hpp"

#include <histedit.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <new>
#include <utility>

namespace shell {
namespace {

constexpr int most_entries = 1000;

// The longest text that all of them begin with.
std::string common_beginning(const std::vector<std::string>& words) {
  std::string beginning = words.front();
  for (const std::string& each : words) {
    const auto differs = std::mismatch(beginning.begin(), beginning.end(), each.begin(), each.end());
    beginning.erase(differs.first, beginning.end());
  }
  return beginning;
}

}  // namespace

line_editor::line_editor(std::string history_file, std::function<completion(std::string_view)> complete)
    : history_file_(std::move(history_file)),
      complete_(std::move(complete)),
      editor_(el_init("ovsql", stdin, stdout, stderr)),
      history_(history_init()) {
  if (editor_ == nullptr || history_ == nullptr) throw std::bad_alloc();
  HistEvent event{};
  ::history(history_, &event, H_SETSIZE, most_entries);
  ::history(history_, &event, H_SETUNIQUE, 1);
  if (!history_file_.empty()) ::history(history_, &event, H_LOAD, history_file_.c_str());
  el_set(editor_, EL_CLIENTDATA, this);
  el_set(editor_, EL_PROMPT, &line_editor::show_prompt);
  el_set(editor_, EL_HIST, ::history, history_);
  bind_keys();
}

line_editor::~line_editor() {
  HistEvent event{};
  if (!history_file_.empty()) ::history(history_, &event, H_SAVE, history_file_.c_str());
  history_end(history_);
  el_end(editor_);
}

// The names of functions are wide: the library would keep copies of others and never free them. While a line is edited,
// Ctrl-C is a key and no signal, and so are the others that the terminal knows.
void line_editor::bind_keys() {
  el_set(editor_, EL_EDITOR, "emacs");
  el_set(editor_, EL_SIGNAL, 1);
  el_set(editor_, EL_SETTY, "-d", "-isig", nullptr);
  el_wset(editor_, EL_ADDFN, L"cancel", L"drop the line", &line_editor::cancel);
  el_set(editor_, EL_BIND, "^C", "cancel", nullptr);
  el_wset(editor_, EL_ADDFN, L"complete", L"complete a word", &line_editor::complete);
  el_set(editor_, EL_BIND, "^I", "complete", nullptr);
  el_wset(editor_, EL_ADDFN, L"suspend", L"stop the process", &line_editor::suspend);
  el_set(editor_, EL_BIND, "^Z", "suspend", nullptr);
  el_set(editor_, EL_BIND, "^R", "em-inc-search-prev", nullptr);
  el_source(editor_, nullptr);  // the user's own choices
}

std::optional<std::string> line_editor::read(const std::string& prompt) {
  prompt_ = prompt;
  cancelled_ = false;
  int length = 0;
  el_set(editor_, EL_PREP_TERM, 1);  // before the prompt: whoever sees it may press Ctrl-C
  const char* const line = el_gets(editor_, &length);
  if (cancelled_) return std::string();
  if (line == nullptr || length <= 0) return std::nullopt;
  std::string text(line, static_cast<std::size_t>(length));
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

void line_editor::remember(const std::string& entry) {
  HistEvent event{};
  ::history(history_, &event, H_ENTER, entry.c_str());
}

line_editor& line_editor::self(editline* of) {
  line_editor* found = nullptr;
  el_get(of, EL_CLIENTDATA, &found);
  return *found;
}

char* line_editor::show_prompt(editline* of) { return self(of).prompt_.data(); }

unsigned char line_editor::cancel(editline* of, int) {
  self(of).cancelled_ = true;
  std::cout << "^C" << std::flush;
  return CC_NEWLINE;
}

unsigned char line_editor::suspend(editline*, int) {
  std::raise(SIGTSTP);
  return CC_REFRESH;
}

unsigned char line_editor::complete(editline* of, int) { return self(of).complete_word(); }

unsigned char line_editor::complete_word() {
  const LineInfo* const line = el_line(editor_);
  const completion found =
      complete_(std::string_view(line->buffer, static_cast<std::size_t>(line->cursor - line->buffer)));
  if (found.candidates.empty()) return CC_ERROR;
  std::string text = common_beginning(found.candidates);
  const bool one = found.candidates.size() == 1;
  if (!one && text.size() <= found.length) {
    show(found.candidates);
    return CC_REDISPLAY;
  }
  el_deletestr(editor_, static_cast<int>(found.length));
  if (one) text += ' ';
  return el_insertstr(editor_, text.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
}

void line_editor::show(const std::vector<std::string>& candidates) const {
  constexpr std::size_t most = 60;
  std::string list = "\n";
  for (std::size_t at = 0; at < std::min(candidates.size(), most); ++at) list += candidates[at] + "  ";
  if (candidates.size() > most) list += "...";
  std::cout << list << '\n' << std::flush;
}

}  // namespace shell
