#pragma once

#include <string>
#include <string_view>
#include <vector>

// Whoever includes this uses the engine as well:
// IWYU pragma: begin_exports
#include "tests/support/files.h"
#include "tests/support/host_support.h"
#include "uci/output.h"
// IWYU pragma: end_exports

// What the tests of the second front end share: an engine between a GUI's two pipes.

namespace tarvyle::support {

using Lines = std::vector<std::string>;

// The number behind a word of a line ("depth", "nodes"); -1 when it is not there.
long long NumberAfter(const std::string& line, std::string_view word);

// What stands in a line behind a word, up to another one or the end; "" when it is not there.
std::string TextBetween(const std::string& line, std::string_view word, std::string_view end = "");

// The lines that begin so.
Lines Beginning(const Lines& lines, std::string_view start);

// The start position with default options, seed 1, no files, no move overhead, a GUI that has said
// nothing yet, and a folder of the test's own, which is the user's data folder too.
class UciTest : public HostTest {
 protected:
  UciTest();
  ~UciTest() override;

  // What goes to the GUI while something runs, line by line; the engine's own messages go there,
  // too, as in the program.
  template <typename Action>
  Lines Said(Action action) {
    {
      const uci::MessagesAsInfo told;
      action();
    }
    return TakeLines();
  }

  // The GUI sends a text, which nobody has read yet.
  void Send(std::string_view text) const;
  // It goes away; what it sent can still be read.
  void HangUp();
  // From now on the input is this text and its end, however long it is.
  void Replay(std::string_view text);

  // Searches within the limits that follow "go", in the position that follows "position", if one is
  // given.
  Lines Go(const std::string& limits, const std::string& position = "");

  // Speaks the protocol from its first line to "quit", which is added to the text.
  Lines Speak(const std::string& text);

  // The engine's text of the position on the board.
  static std::string Board();

  TemporaryFolder folder_;

 private:
  Lines TakeLines() const;

  int gui_ = -1;  // the GUI's end of the pipe
  int in_ = -1;   // the engine's
  int replay_ = -1;
  int out_ = -1;  // a file in memory
  std::string home_;
};

}  // namespace tarvyle::support
