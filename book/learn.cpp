#include "book/learn.h"

#include <cstring>

#include "book/epd.h"
#include "book/learnfilter.h"
#include "book/learnmemory.h"
#include "position/record.h"
#include "position/score.h"

namespace tarvyle {

LearnNode* learn[kLearnBuckets];

namespace {

constexpr std::int16_t kBookKind = 16;
constexpr std::int16_t kSearchKind = 0;
constexpr int kBookBand = 15;  // a book position counts as lying within -15..15
constexpr int kThousand = 1000;

LearnNode* NewNode(const char* text, std::int16_t kind) {
  const std::size_t length = std::strlen(text) + 1 + kLearnHeader;
  if (length > kMaxLearnRecord) return nullptr;
  void* memory = LearnAllocate(kBeforeRecord + length);
  if (memory == nullptr) return nullptr;
  auto* node = static_cast<LearnNode*>(memory);
  node->key_lo = g.key.low;
  node->key_hi = g.key.high;
  node->kind = kind;
  node->length = static_cast<std::int16_t>(length);
  node->side = static_cast<std::int8_t>(g.side);
  node->check = CheckByte(text);
  std::memcpy(node->text, text, std::strlen(text) + 1);
  return node;
}

// Notes the keys of all nodes.
void NoteAll() {
  for (const LearnNode* head : learn) {
    for (const LearnNode* node = head; node != nullptr; node = node->next) {
      NoteLearned(node->key_lo, node->key_hi);
    }
  }
}

bool SameKey(const LearnNode& node, int side, std::uint32_t key_lo, std::uint32_t key_hi) {
  return node.key_lo == key_lo && node.key_hi == key_hi && node.side == side;
}

}  // namespace

void LearnClear() {
  std::memset(learn, 0, sizeof learn);
  ClearLearnFilter();
}

void LearnReset() {
  LearnClear();
  LearnRelease();
}

LearnNode* SearchNode(int side, std::uint32_t key_lo, std::uint32_t key_hi) {
  if (!MayBeLearned(key_lo, key_hi)) return nullptr;
  LearnNode* node = LearnBucket(key_lo);
  while (node != nullptr && !SameKey(*node, side, key_lo, key_hi)) node = node->next;
  return node;
}

LearnNode* FindCurrentNode() {
  if (!MayBeLearned(g.key.low, g.key.high)) return nullptr;
  char text[kEpdSize];
  bool text_made = false;  // made for the first candidate only: it is the expensive part
  for (LearnNode* node = LearnBucket(g.key.low); node != nullptr; node = node->next) {
    if (!SameKey(*node, g.side, g.key.low, g.key.high)) continue;
    if (!text_made) MakeEpd(text);
    text_made = true;
    if (std::strcmp(node->text, text) == 0) return node;
  }
  return nullptr;
}

LearnNode* NewLNode(const char* text) {
  LearnNode* node = NewNode(text, kBookKind);
  if (node != nullptr) node->book = 1;
  return node;
}

void LinkLearnNode(LearnNode* node) {
  if (node == nullptr) return;
  if (LearnFilterIsFull() && WidenLearnFilter()) NoteAll();
  LearnNode*& head = LearnBucket(node->key_lo);
  node->next = head;
  head = node;
  NoteLearned(node->key_lo, node->key_hi);
}

void InsertNodeLearn() {
  if (FindCurrentNode() != nullptr) return;
  char text[kEpdSize];
  MakeEpd(text);
  LinkLearnNode(NewLNode(text));
}

void SaveSearchResult(int score, int depth) {
  LearnNode* node = FindCurrentNode();
  if (node == nullptr) {
    char text[kEpdSize];
    MakeEpd(text);
    node = NewNode(text, kSearchKind);
    if (node == nullptr) return;
    LinkLearnNode(node);
  }
  node->depth = static_cast<std::int8_t>(depth);
  node->score = score;
}

bool LearnLook(int depth, int alpha, int beta, int& score) {
  const LearnNode* node = FindCurrentNode();
  if (node == nullptr) return false;
  if (node->depth >= depth) {
    score = node->score;
    return true;
  }
  if (!IsBookNode(*node) || node->depth != 0) return false;
  if (alpha > kBookBand) {
    score = alpha;
    return true;
  }
  if (beta < -kBookBand) {
    score = beta;
    return true;
  }
  return false;
}

int extract_strateg_score(int score) {
  if (IsMated(score) || IsMating(score)) return score;
  if (score > 0) {
    while (score > kThousand / 2) score -= kThousand;
  } else if (score < 0) {
    // Not the mirror image: the result lies in 500..1499, and book weights rely on it.
    while (score < kThousand / 2) score += kThousand;
  }
  return score;
}

}  // namespace tarvyle
