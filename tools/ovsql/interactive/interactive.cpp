#include "interactive/interactive.hpp"

#include <clocale>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>

#include "interactive/interrupt.hpp"
#include "interactive/line_editor.hpp"
#include "interactive/word_completion.hpp"
#include "terminal.hpp"
#include "text/script_scan.hpp"

namespace shell {
namespace {

constexpr const char* first_prompt = "ovsql> ";
constexpr const char* next_prompt = "   ..> ";

// The user's choice, empty for none; else a file in the home folder.
std::string history_file() {
  if (const char* const chosen = std::getenv("OVSQL_HISTORY")) return chosen;
  const char* const home = std::getenv("HOME");
  return home == nullptr ? "" : std::string(home) + "/.ovsql_history";
}

class dialogue {
 public:
  explicit dialogue(session& on)
      : on_(on), editor_(history_file(), [&](std::string_view line) { return complete_word(on.database(), line); }) {}

  void run() {
    while (!on_.quits()) {
      const std::optional<std::string> line = editor_.read(input_.empty() ? first_prompt : next_prompt);
      if (!line) break;
      editor_.cancelled() ? input_.clear() : take(*line);
    }
    if (!on_.quits()) std::cout << '\n';
  }

 private:
  void take(const std::string& line) {
    if (input_.empty() && split_words(line).empty()) return;
    input_ += (input_.empty() ? "" : "\n") + line;
    if (!input_.starts_with('.') && !is_complete(input_)) return;
    editor_.remember(input_);
    take_interrupt();
    on_.settings().output.width = terminal_width();
    on_.run(input_);
    std::cout.flush();
    input_.clear();
  }

  session& on_;
  line_editor editor_;
  std::string input_;
};

}  // namespace

void run_interactively(session& on) {
  if (std::setlocale(LC_CTYPE, "") == nullptr) std::setlocale(LC_CTYPE, "C.UTF-8");
  note_interrupts();
  std::cout << "SQL ends with a semicolon; .help lists commands, .quit leaves." << std::endl;
  dialogue(on).run();
}

}  // namespace shell
