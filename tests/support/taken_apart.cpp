#include "tests/support/taken_apart.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "eval/attacksets.h"
#include "eval/kingsafety.h"
#include "eval/mobility.h"
#include "eval/pawns.h"
#include "eval/pieceterms.h"
#include "eval/scoretable.h"
#include "eval/side.h"
#include "eval/threats.h"
#include "position/record.h"
#include "position/sets.h"
#include "position/types.h"

namespace tarvyle::support {

namespace {

constexpr SquareSet kEverywhere = ~SquareSet{0};

// A side's view of the board whose parts can be changed.
struct View {
  explicit View(const Side& side)
      : colour(side.colour),
        phase(side.phase),
        attacks(side.attacks),
        their_attacks(side.their_attacks),
        reach(side.reach) {
    std::copy_n(side.own, 8, own);
    std::copy_n(side.theirs, 8, theirs);
  }

  Side AsSide() const {
    return {colour, 1 - colour, phase, own, theirs, attacks, their_attacks, reach};
  }

  int colour;
  double phase;
  SquareSet own[8];
  SquareSet theirs[8];
  AttackSets attacks;
  AttackSets their_attacks;
  const SquareSet* reach;
};

// What `ask` answers for a view with `change` made to it.
template <typename Change, typename Ask>
int With(const View& view, Change change, Ask ask) {
  View changed = view;
  change(changed);
  return ask(changed.AsSide());
}

// The fields of the record that are changed here, with their values.
struct Counts {
  decltype(g.king_sq) king_sq;
  decltype(g.piece_cnt) piece_cnt;
  decltype(g.pawn_file_cnt) pawn_file_cnt;
};

// What `ask` answers with `change` made to these fields.
template <typename Change, typename Ask>
int WithRecord(Change change, Ask ask) {
  Counts before;
  std::memcpy(before.king_sq, g.king_sq, sizeof g.king_sq);
  std::memcpy(before.piece_cnt, g.piece_cnt, sizeof g.piece_cnt);
  std::memcpy(before.pawn_file_cnt, g.pawn_file_cnt, sizeof g.pawn_file_cnt);
  change();
  const int answer = ask();
  std::memcpy(g.king_sq, before.king_sq, sizeof g.king_sq);
  std::memcpy(g.piece_cnt, before.piece_cnt, sizeof g.piece_cnt);
  std::memcpy(g.pawn_file_cnt, before.pawn_file_cnt, sizeof g.pawn_file_cnt);
  return answer;
}

// A set with no more than one square of each file.
SquareSet OneAFile(SquareSet set) {
  SquareSet result = 0;
  while (set != 0) {
    const Square square = TakeFirst(set);
    if ((result & FileSet(FileOf(square))) == 0) result |= SetOf(square);
  }
  return result;
}

class Taker {
 public:
  Taker(int colour, const BoardAttacks& attacks)
      : view_(SideOf(colour, attacks)), c_(colour), o_(1 - colour) {}

  TakenApart Take() {
    for (int slot = g.list_first[c_]; slot <= g.list_last[c_]; ++slot) {
      const Square square = g.list_sq[slot];
      if (square != -1) AddPiece(square);
    }
    AddWhole();
    return apart_;
  }

 private:
  void Add(const char* term, int amount) {
    apart_.total += amount;
    if (amount != 0) apart_.terms[term].push_back(amount);
  }

  void AddPiece(Square q) {
    const int piece = g.board[q];
    apart_.total += score_table[c_][piece][q];
    AddThreats(q);
    before_ |= SetOf(q);
    switch (piece) {
      case Pawn: AddPawn(q); break;
      case Knight: AddKnight(q); break;
      case Bishop: AddBishop(q); break;
      case Rook: AddRook(q); break;
      case Queen: AddQueen(q); break;
      default: Add("king safety", KingTerm(view_.AsSide())); break;
    }
  }

  // The threats with some kinds only; a view without pawns leaves out what pawns lose more.
  int ThreatsOf(SquareSet pieces, bool hanging, bool outbid, bool outnumbered, bool pawns) const {
    Threats threats = threats_;
    if (!hanging) threats.hanging = 0;
    if (!outbid) threats.outbid = 0;
    if (!outnumbered) threats.outnumbered = 0;
    View view = view_;
    if (!pawns) view.own[Pawn] = 0;
    return ThreatTerms(view.AsSide(), threats, pieces);
  }

  void AddThreats(Square q) {
    const SquareSet here = SetOf(q);
    const int attacked = ThreatsOf(here, false, false, false, true);
    Add("attacked", attacked);
    Add("weak pawn", ThreatsOf(here, false, false, true, true) - attacked);
    Add("cheaper attacker", ThreatsOf(here, false, true, false, true) - attacked);
    // What a hanging piece costs depends on those before it.
    const auto hanging_among = [&](SquareSet pieces) {
      return ThreatsOf(pieces, true, false, false, false) -
             ThreatsOf(pieces, false, false, false, false);
    };
    const int hanging = hanging_among(before_ | here) - hanging_among(before_);
    Add("hanging", hanging);
    Add("hanging pawn",
        ThreatsOf(here, true, false, false, true) - ThreatsOf(here, true, false, false, false));
  }

  void AddKnight(Square q) {
    const auto term = [q](const Side& side) { return KnightTerm(side, q); };
    const int whole = term(view_.AsSide());
    const int support = whole - With(
                                    view_, [](View& v) { v.attacks.by[Knight] = 0; }, term);
    const int no_pawn = whole - With(
                                    view_, [](View& v) { v.attacks.by[Pawn] = kEverywhere; }, term);
    const int walk =
        whole - WithRecord([&] { g.king_sq[o_] = q; }, [&] { return term(view_.AsSide()); });
    Add("knight", whole - support - no_pawn - walk);
    Add("knight by knight", support);
    Add("knight without pawn", no_pawn);
    Add("knight to king", walk);
  }

  void AddBishop(Square q) {
    const auto term = [&] { return BishopTerm(view_.AsSide(), q); };
    const int pair = term() - WithRecord([&] { g.piece_cnt[c_][Bishop] = 1; }, term);
    const int lines = LineBonus(view_.AsSide(), Bishop, q);
    Add("bishop", term() - pair - lines);
    Add("bishop pair", pair);
    Add("pins and x-rays", lines);
  }

  void AddRook(Square q) {
    const auto term = [&] { return RookTerm(view_.AsSide(), q); };
    const int walk = term() - WithRecord([&] { g.king_sq[o_] = q; }, term);
    const int lines = LineBonus(view_.AsSide(), Rook, q);
    Add("rook", term() - walk - lines);
    Add("rook to king", walk);
    Add("pins and x-rays", lines);
    Add("rook truncation", AddedByTruncation(view_.phase, apart_.total));

    const auto place = [q](const Side& side) { return RookPlaceTerm(side, q); };
    const int whole = place(view_.AsSide());
    const int support = whole - With(
                                    view_, [](View& v) { v.attacks.by[Rook] = 0; }, place);
    const int pair = whole - WithRecord([&] { g.piece_cnt[c_][Rook] = 1; },
                                        [&] { return place(view_.AsSide()); });
    const int file = whole - With(
                                 view_, [](View& v) { v.own[Pawn] = kEverywhere; }, place);
    Add("rook by rook", support);
    Add("rook pair", pair);
    Add("rook file", file);
    Add("rook row", whole - support - pair - file);
  }

  void AddQueen(Square q) {
    const auto term = [q](const Side& side) { return QueenTerm(side, q); };
    const auto same = [&] { return term(view_.AsSide()); };
    const int whole = same();
    const int rook = whole - With(
                                 view_, [](View& v) { v.attacks.by[Rook] = 0; }, term);
    const int bishop = whole - With(
                                   view_, [](View& v) { v.attacks.by[Bishop] = 0; }, term);
    const int own_king = whole - WithRecord([&] { g.king_sq[c_] = q; }, same);
    // With him on her very square she would get all of it: 5 and half of 14.
    const int their_king = 12 + whole - WithRecord([&] { g.king_sq[o_] = q; }, same);
    const int helpers = whole - WithRecord(
                                    [&] {
                                      auto& count = g.piece_cnt[c_];
                                      count[Knight] = count[Bishop] = count[Rook] = 0;
                                    },
                                    same);
    const int lines = LineBonus(view_.AsSide(), Queen, q);
    Add("queen", whole - rook - bishop - own_king - their_king - helpers - lines);
    Add("queen by rook", rook);
    Add("queen by bishop", bishop);
    Add("queen far from king", own_king);
    Add("queen to king", their_king);
    Add("queen helpers", helpers);
    Add("pins and x-rays", lines);
  }

  void AddPawn(Square q) {
    AddPawnLosses(q);
    AddPawnGains(q);
  }

  void AddPawnLosses(Square q) {
    const SquareSet here = SetOf(q);
    const auto losses_of = [](SquareSet pawns) {
      return [pawns](const Side& side) { return PawnTerms(side, pawns).losses; };
    };
    // Without own pawns none is doubled or isolated. A pawn before the edge has no front square to
    // be supported, and none to be blocked.
    const auto alone = [](View& v) { v.own[Pawn] = 0; };
    const auto alone_supported = [](View& v) {
      v.own[Pawn] = 0;
      v.attacks.by[Pawn] = kEverywhere;
    };
    const bool at_edge = Ahead(c_, here) == 0;
    const int front = With(view_, alone, losses_of(here));
    const int blocked = at_edge ? 0 : With(view_, alone_supported, losses_of(here));
    Add("front unsupported", front - blocked);
    Add("front blocked", blocked);

    // What the third one costs more depends on those before it.
    const auto one_a_file = [](View& v) { v.own[Pawn] = OneAFile(v.own[Pawn]); };
    const auto doubled_among = [&](SquareSet pawns) {
      return losses_of(pawns)(view_.AsSide()) - With(view_, one_a_file, losses_of(pawns));
    };
    const auto isolated_among = [&](SquareSet pawns) {
      return With(view_, one_a_file, losses_of(pawns)) - With(view_, alone, losses_of(pawns));
    };
    const SquareSet pawns = before_ & view_.own[Pawn];
    Add("doubled", doubled_among(pawns) - doubled_among(pawns & ~here));
    Add("isolated", isolated_among(pawns) - isolated_among(pawns & ~here));
  }

  void AddPawnGains(Square q) {
    const auto gains = [q](const Side& side) { return PawnTerms(side, SetOf(q)).gains; };
    const int whole = gains(view_.AsSide());
    // With their pawns' attacks everywhere, what a pawn may gain is for its file alone, but for one
    // before the edge, which is passed at any rate.
    const auto stopped = [](View& v) { v.their_attacks.by[Pawn] = kEverywhere; };
    const auto stopped_on_full_files = [](View& v) {
      v.their_attacks.by[Pawn] = kEverywhere;
      v.theirs[Pawn] = kEverywhere;
    };
    const int file = With(view_, stopped, gains) - With(view_, stopped_on_full_files, gains);
    const int supported = whole - With(
                                      view_, [](View& v) { v.attacks.by[Pawn] = 0; }, gains);
    const int rook = whole - With(
                                 view_, [](View& v) { v.attacks.by[Rook] = 0; }, gains);
    const int unstoppable = whole - With(
                                        view_, [](View& v) { v.phase = 1.0; }, gains);
    Add("no enemy pawn on file", file);
    Add("passed", whole - file - supported - rook - unstoppable);
    Add("passed and supported", supported);
    Add("passed with rook", rook);
    Add("unstoppable", unstoppable);
  }

  void AddWhole() {
    const auto term = [&] { return SideTerms(view_.AsSide()); };
    const int centre =
        term() - WithRecord([&] { g.pawn_file_cnt[c_][3] = g.pawn_file_cnt[c_][4] = 1; }, term);
    const int majority = term() - WithRecord([&] { g.piece_cnt[o_][Knight] += 16; }, term);
    Add("pawn count", term() - centre - majority);
    Add("no centre pawn", centre);
    Add("majority", majority);
  }

  const View view_;
  const int c_;
  const int o_;
  const Threats threats_ = FindThreats(view_.AsSide());
  SquareSet before_ = 0;  // the pieces walked so far
  TakenApart apart_;
};

}  // namespace

std::vector<int> TakenApart::Of(const std::string& term) const {
  const auto found = terms.find(term);
  return found != terms.end() ? found->second : std::vector<int>{};
}

TakenApart TakeApart(int colour) {
  const BoardAttacks attacks = AttacksOnBoard();
  return Taker(colour, attacks).Take();
}

}  // namespace tarvyle::support
