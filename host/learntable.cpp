#include "host/learntable.h"

#include <cstddef>
#include <cstdint>

namespace tarvyle {

void VisitLearnTable(const std::function<bool(const LearnNode&)>& visit) {
  for (const LearnNode* head : learn) {
    for (const LearnNode* node = head; node != nullptr; node = node->next) {
      if (!visit(*node)) return;
    }
  }
}

std::string RecordOf(const LearnNode& node) {
  LearnNode header = node;
  header.link = 0;
  header.check = static_cast<std::uint8_t>(StrHashKey(node.text));
  std::string record(reinterpret_cast<const char*>(&header.key_lo), kLearnHeader);
  return record.append(node.text, static_cast<std::size_t>(node.length) - kLearnHeader);
}

}  // namespace tarvyle
