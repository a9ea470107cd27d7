#pragma once

// What the terms of the evaluation weigh, in 1/1000 pawn. A "loss" is taken off and never below 0,
// all others are added. Material is value[] of position/types.h; the piece-square values are in
// scoretable.cpp, main_diag and PASSED_PAWN_ROW in tables.h, what the pieces weigh for the phase in
// phase.cpp. The second evaluation of the tests (tests/support/plain_*) has its own copy of all of
// these, on purpose.

namespace tarvyle::weight {

// --- attacked pieces -----------------------------------------------------------------------------

inline constexpr int kAttackLoss = 1;       // each attack on any piece
inline constexpr int kHangingLoss = 4;      // each hanging piece
inline constexpr int kSeveralHangLoss = 6;  // more, once, when two pieces or more hang
inline constexpr int kHangingPawnLoss = 1;  // more, for each hanging pawn
inline constexpr int kOutbidLoss = 1;       // the cheapest attacker is cheaper than any defender
inline constexpr int kOutnumberedLoss = 1;  // a pawn that no pawn defends, with more attackers

// --- knights -------------------------------------------------------------------------------------

inline constexpr int kKnight = 50;
inline constexpr int kPawnsToKnightPoint = 2;     // so many pawns on the board are worth a point
inline constexpr int kKnightStepLoss = 1;         // each king's step between it and the enemy king
inline constexpr int kKnightByKnight = 1;         // a knight defends it
inline constexpr int kKnightWithoutPawnLoss = 1;  // no pawn does

// --- bishops -------------------------------------------------------------------------------------

inline constexpr int kBishop = 51;
inline constexpr int kBishopPair = 8;  // each bishop of two or more

// By the number of empty squares seen, up to the most that there can be.
inline constexpr int kBishopMobility[14] = {0, 1, 2, 4, 5, 6, 7, 8, 9, 10, 10, 11, 11, 12};

// --- rooks ---------------------------------------------------------------------------------------

inline constexpr int kRook = 37;
inline constexpr int kRookFile[8] = {0, 0, 1, 1, 1, 1, 0, 0};  // by file
inline constexpr int kFilesToRookPoint = 2;  // so many files away from the enemy king are a point
inline constexpr double kRookEnding = 10;    // times how far the game is on, before the truncation
inline constexpr int kRookByRook = 1;        // a rook defends it
inline constexpr int kRookPair = 1;          // each rook of two or more
inline constexpr int kRookOnHalfOpenFile = 4;  // no own pawn on its file, but an enemy one
inline constexpr int kRookOnOpenFile = 10;     // no pawn at all
inline constexpr int kRookOnFirstRow = 1;
inline constexpr int kRookOnSeventhRow = 8;  // with pawns there, or the enemy king behind

inline constexpr int kRookMobility[15] = {0, 1, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 9, 9, 10};

// --- queens --------------------------------------------------------------------------------------

inline constexpr int kQueen = 107;
inline constexpr int kQueenByRook = 1;        // a rook defends her
inline constexpr int kQueenByBishop = 1;      // a bishop does
inline constexpr int kQueenAwayLoss = 1;      // away from her own king
inline constexpr int kQueenAwaySteps = 3;     // that is so many king's steps or more
inline constexpr int kQueenNearEnemy = 5;     // near the enemy king
inline constexpr int kQueenNearSteps = 3;     // that is so many or fewer
inline constexpr int kStepsToQueenPoint = 2;  // so many rook's steps nearer to him are a point
inline constexpr int kQueenWithOne = 2;       // with one knight, bishop or rook on her side
inline constexpr int kQueenWithSeveral = 6;   // with more of them

inline constexpr int kQueenMobility[28] = {0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3,
                                           3, 4, 4, 4, 4, 4, 5, 5, 5, 5, 5, 5, 5, 6};

// --- lines ---------------------------------------------------------------------------------------

// For the enemy piece behind another piece on a slider's line.
inline constexpr int kXRay = 5;            // behind an own piece
inline constexpr int kXRayOfKing = 8;      // the same when it is the king
inline constexpr int kPin = 6;             // behind another enemy piece
inline constexpr int kPinToKing = 7;       // the same when it is the king
inline constexpr int kPinToKingTwice = 8;  // and the piece between is attacked twice or more

// --- pawns ---------------------------------------------------------------------------------------

inline constexpr int kUnsupportedLoss = 1;  // no own pawn attacks the square in front
inline constexpr int kBlockedLoss = 2;      // an enemy piece stands there
inline constexpr int kDoubledLoss = 2;      // each pawn of several on a file
inline constexpr int kIsolatedLoss = 8;     // each pawn without own pawns on the files beside
inline constexpr int kThirdLoss = 6;     // more, for the third doubled and the third isolated one
inline constexpr int kFreeFile = 1;      // no enemy pawn on its file
inline constexpr int kPassed = 12;       // besides PASSED_PAWN_ROW
inline constexpr int kPassedByPawn = 4;  // a pawn defends it or the square in front
inline constexpr int kPassedByRook = 4;  // in the far half: a rook defends it and the square behind
inline constexpr int kOutrunsKing = 8;   // times PASSED_PAWN_ROW: nobody can catch it

// --- the side as a whole -------------------------------------------------------------------------

inline constexpr int kMissingPawnLoss = 1;        // each pawn less than eight
inline constexpr int kNoPawnLoss = 16;            // more, for none
inline constexpr int kCentreLoss[3] = {0, 1, 3};  // by how many of the d- and e-files have no pawn
inline constexpr int kMorePieces = 2;             // than the opponent, pawns and king left out

// --- the king ------------------------------------------------------------------------------------

// The sum is scaled by the opponent's material, what castling adds twice, kAttackedBack not at all.
inline constexpr int kShield[8] = {4, 6, 2, 0, 0, 2, 6, 4};  // each pawn before him, by its file
inline constexpr int kNoPawnNearLoss = 4;                    // no own pawn in his ring
inline constexpr int kNoShieldLoss = 8;                      // none before him
inline constexpr int kBareFileLoss = 4;                      // none on his file
inline constexpr int kRingAttackLoss = 1;                    // each attack on a square of his ring
inline constexpr int kShutInCheckLoss = 10;                  // in check with no free square
inline constexpr int kPawnBeforeLoss = 4;       // an enemy pawn attacks the square before him
inline constexpr int kShutInLoss = 4;           // attacked along a line with no free square
inline constexpr int kNearlyShutInLoss = 2;     // with one
inline constexpr double kAttackedBack = 1;      // a line to him is attacked: before the truncation
inline constexpr double kCastledLong = 6;       // castled, on one of the first files
inline constexpr double kCastledShort = 8;      // on one of the others
inline constexpr int kCastledLongFiles = 5;     // a to e
inline constexpr int kNoLongCastlingLoss = 2;   // against a queen, not castled: right lost
inline constexpr int kNoShortCastlingLoss = 4;  // the same
inline constexpr int kNoCastlingLoss = 12;      // more, for both

// By the number of attacked lines to him: 60 * sin(pi * lines / 20), greatest at 10; 0 for more.
inline constexpr int kDangerLines = 21;
inline constexpr int kDangerLoss[kDangerLines] = {0,  9,  19, 27, 35, 42, 49, 53, 57, 59, 60,
                                                  59, 57, 53, 49, 42, 35, 27, 19, 9,  0};

}  // namespace tarvyle::weight
