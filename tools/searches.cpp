#include "tools/searches.h"

#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "host/engine.h"
#include "pv/print.h"
#include "pv/tree.h"
#include "search/root.h"
#include "search/style.h"
#include "tools/lines.h"

namespace tarvyle::tools {

namespace {

std::string ReportText(const SearchReport& report) {
  std::string text;
  for (const Iteration& iteration : report.iterations) {
    if (!text.empty()) text += ' ';
    text += std::to_string(iteration.depth) + ':' + std::to_string(iteration.score) + ':' +
            std::to_string(iteration.nodes);
  }
  text += '\t';
  text += report.best_move.empty() ? "none"
                                   : report.best_move + " score " + std::to_string(report.score) +
                                         " depth " + std::to_string(report.depth);
  text += '\t';
  for (std::size_t i = 0; i < report.lines.size(); ++i) {
    text += (i > 0 ? " | " : "") + report.lines[i];
  }
  return text;
}

void StartFresh(const SearchOptions& options) {
  if (!FreshProcess(options.book)) throw std::runtime_error("cannot open " + options.book);
}

std::string AnswerSearch(const SearchOptions& options, std::string_view line) {
  const auto fields = Fields(line);
  if (fields.size() < 3) throw std::runtime_error("root, tab, style, tab, depth expected");
  const std::string root(fields[0]);
  const std::string style(fields[1]);
  const int depth = DepthOf(fields[2], kFirstIteration, kMaxIteration);
  if (!load_play_style(style.c_str())) throw std::runtime_error("unknown style " + style);
  if (!options.chain) StartFresh(options);
  if (!SetUpRoot(root)) return root + "\trefused";
  return root + '\t' + style + '\t' + std::to_string(depth) + '\t' +
         ReportText(SearchToDepth(depth, options.seed));
}

}  // namespace

void RunSearches(const SearchOptions& options) {
  StartFresh(options);
  const auto answer = [&](std::string_view line) {
    std::string text = AnswerSearch(options, line);
    if (options.pv_tree) {
      std::cout << text << std::endl;
      pvPrint(pv_tree, stdout);
      std::fflush(stdout);
      text.clear();
    }
    return text;
  };
  AnswerLines(options.file, answer, [&](std::string_view line) {
    if (options.chain && line.starts_with("# new process")) StartFresh(options);
  });
}

}  // namespace tarvyle::tools
