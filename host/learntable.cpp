#include "host/learntable.h"

namespace tarvyle {

void VisitLearnTable(const std::function<bool(const LearnNode&)>& visit) {
  for (const LearnNode* head : learn) {
    for (const LearnNode* node = head; node != nullptr; node = node->next) {
      if (!visit(*node)) return;
    }
  }
}

}  // namespace tarvyle
