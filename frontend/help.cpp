#include "frontend/help.h"

#include <cstdio>

namespace tarvyle {

namespace {

constexpr const char* kHelpLines[] = {
    "#  move                                     ",
    "#   <from><to>[promote_piece]               ",
    "#    example:                                ",
    "#          e2e4,  a6a7q                     ",
    "#  <quit>            - exit and save learn. ",
    "#  <undo>            - go to back           ",
    "#  <redo>            - ---                  ",
    "#  <new>             - new game             ",
    "#  <force>           - for input moves      ",
    "#  <st> <second>     - time per. move       ",
    "#  <go>              - get move             ",
    "#  <setboard>  <fen_pos> - put position     ",
    "#  <getboard>            - get position     ",
    "#  <pos>             - show position        ",
    "#  <getmoves>        - print all moves      ",
    "#  <style> [level]   - knowledge1, knowledge2, knowledge3 ",
    "#  ? <rnd> [on] [off]  - new experement. search ",
    "#  <save> [file], <load> [file] - save(load) game in binary format ",
    "#  examples:                         ",
    "#        xboard -fcp ./tarvyle              ",
    "#        winboard.exe -fd -fcp tarvyle.exe          ",
    "#        glintview.exe C:\\Games\\Tarvyle\\tarvyle.exe chess ",
    "#  search  output format:                   ",
    "#        depth  score  time(1/100sec.)  pos/sec   pv-line         ",
    "#  about:                                   ",
};

// Who made it, where to read on, where to report.
constexpr const char* kContactLines[] = {
    "Tarvyle developers",
    "README.md of the project",
    "the project's issue tracker",
};

}  // namespace

void PrintHelp() {
  for (const char* line : kHelpLines) std::puts(line);
  for (const char* line : kContactLines) std::printf("#       %s  \n", line);
}

}  // namespace tarvyle
