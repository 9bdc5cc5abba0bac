#include "core/exchange.h"

#include "core/attackquery.h"
#include "core/attacks.h"
#include "core/bitboard.h"
#include "core/board.h"

namespace {

// The men that bear on the contested square while an exchange is played out.
struct Exchange {
    int Target;
    Bitboard Attackers;

    // Takes the cheapest attacker of a side off, lets in the slider behind it and returns its SeeValue; 0
    // when the side has no attacker.
    int TakeCheapest(int side) {
        for (const unsigned piece : {PAWN, KNIGHT, BISHOP, ROOK, QUEEN, KING}) {
            const Bitboard men = Attackers & board.Pieces[piece][side];
            if (men == 0) continue;
            const int square = LowestSquare(men);
            Attackers ^= SquareBit(square);
            if (piece != KNIGHT) Attackers |= XrayRay(Target, square);
            return SeeValue[piece];
        }
        return 0;
    }
};

// Plays out the exchange after our capture; `balance` is what we have won less what stands to be lost, below
// 0.
bool SurvivesExchange(Exchange& exchange, int balance) {
    const int us = board.SideToMove, them = ChangeSide(us);
    for (;;) {
        const int theirs = exchange.TakeCheapest(them);
        if (theirs == 0) return true;
        balance += theirs;
        if (balance < 0) return false;
        const int ours = exchange.TakeCheapest(us);
        if (ours == 0) return false;
        // Their king can't have taken a man that we still defend.
        if (ours == SeeValue[KING] && balance > 100) return true;
        balance -= ours;
        if (balance >= 0) return true;
    }
}

}  // namespace

bool CaptureIsSafe(int to, int from, unsigned piece, unsigned captured, unsigned promotion) {
    if (promotion != EMPTY && promotion != QUEEN) return false;
    if (SeeValue[captured] >= SeeValue[piece]) return true;
    int gain = SeeValue[captured], stake = SeeValue[piece];
    if (promotion == QUEEN) {
        stake = SeeValue[QUEEN];
        gain += SeeValue[QUEEN] - SeeValue[PAWN];
    }
    const int risk = stake - gain;
    const int us = board.SideToMove, them = ChangeSide(us);

    // 1. Defenders so cheap that taking back pays whatever we have behind; cheapest to find first.
    const Bitboard theirPawns = PawnCaptures[us][to] & board.Pieces[PAWN][them];
    if (risk >= 2 && theirPawns != 0) return false;
    const Bitboard knights = KnightTargets[to] & (board.Pieces[KNIGHT][WHITE] | board.Pieces[KNIGHT][BLACK]);
    if (risk > 3 && (knights & board.Occupied[them]) != 0) return false;
    const Bitboard diagonal = DiagonalAttacks(to) & board.DiagonalSliders;
    if (risk > 3 && (diagonal & board.Pieces[BISHOP][them]) != 0) return false;
    const Bitboard straight = StraightAttacks(to) & board.StraightSliders;
    if (risk > 5 && (straight & board.Pieces[ROOK][them]) != 0) return false;

    // 2. A pawn of ours takes back: what we may lose is covered.
    const Bitboard ourPawns = PawnCaptures[them][to] & board.Pieces[PAWN][us];
    if (stake < SeeValue[QUEEN] && gain >= 1 && ourPawns != 0) return true;

    // 3. Everybody takes part; the capturer has left its square, and what stood behind it bears on the
    // target.
    const Bitboard kings = KingTargets[to] & (board.Pieces[KING][WHITE] | board.Pieces[KING][BLACK]);
    Exchange exchange{to, theirPawns | knights | diagonal | straight | ourPawns | kings};
    exchange.Attackers &= ~(SquareBit(from) | SquareBit(to));
    if (Direction[to * 64 + from] != 0) exchange.Attackers |= XrayRay(to, from);
    if (exchange.Attackers == 0) return true;
    return SurvivesExchange(exchange, gain - stake);
}
