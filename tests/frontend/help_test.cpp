#include "frontend/help.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/support/frontend_support.h"

namespace tarvyle {

using namespace support;

namespace {

TEST(HelpText, IsThisWordForWord) {
  EXPECT_EQ(Listen(PrintHelp).out,
            "#  move                                     \n"
            "#   <from><to>[promote_piece]               \n"
            "#    example:                                \n"
            "#          e2e4,  a6a7q                     \n"
            "#  <quit>            - exit and save learn. \n"
            "#  <undo>            - go to back           \n"
            "#  <redo>            - ---                  \n"
            "#  <new>             - new game             \n"
            "#  <force>           - for input moves      \n"
            "#  <st> <second>     - time per. move       \n"
            "#  <go>              - get move             \n"
            "#  <setboard>  <fen_pos> - put position     \n"
            "#  <getboard>            - get position     \n"
            "#  <pos>             - show position        \n"
            "#  <getmoves>        - print all moves      \n"
            "#  <style> [level]   - knowledge1, knowledge2, knowledge3 \n"
            "#  ? <rnd> [on] [off]  - new experement. search \n"
            "#  <save> [file], <load> [file] - save(load) game in binary format \n"
            "#  examples:                         \n"
            "#        xboard -fcp ./tarvyle              \n"
            "#        winboard.exe -fd -fcp tarvyle.exe          \n"
            "#        glintview.exe C:\\Games\\Tarvyle\\tarvyle.exe chess \n"
            "#  search  output format:                   \n"
            "#        depth  score  time(1/100sec.)  pos/sec   pv-line         \n"
            "#  about:                                   \n"
            "#       Tarvyle developers  \n"
            "#       README.md of the project  \n"
            "#       the project's issue tracker  \n");
}

}  // namespace
}  // namespace tarvyle
