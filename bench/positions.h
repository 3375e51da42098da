#pragma once

#include <array>
#include <cstdint>

namespace ombrin {

// Positions of every kind for measuring the search: openings, middlegames quiet and sharp,
// endgames, and positions with a point.
inline constexpr std::array BENCH_POSITIONS = {
    // Openings.
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -",
    "r1bqkbnr/1ppp1ppp/p1n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R w KQkq -",
    "rnbqkb1r/1p2pppp/p2p1n2/8/3NP3/2N5/PPP2PPP/R1BQKB1R w KQkq -",
    "rnbqkb1r/ppp2ppp/4pn2/3p4/2PP4/2N5/PP2PPPP/R1BQKBNR w KQkq -",
    "rnbq1rk1/ppp1ppbp/3p1np1/8/2PPP3/2N2N2/PP3PPP/R1BQKB1R w KQ -",
    "rn1qkbnr/pp2pppp/2p3b1/8/3P4/6N1/PPP2PPP/R1BQKBNR w KQkq -",
    "r1bqkb1r/ppp2ppp/2n2n2/3pp3/2P5/2N2NP1/PP1PPP1P/R1BQKB1R w KQkq -",
    "rn1qkb1r/pp2pppp/2p2n2/5b2/P1pP4/2N2N2/1P2PPPP/R1BQKB1R w KQkq -",
    "r1bqk2r/pppp1ppp/2n2n2/2b1p3/2B1P3/2P2N2/PP1P1PPP/RNBQK2R w KQkq -",
    "rnbqk2r/pp2ppbp/2p2np1/3p4/2PP4/5NP1/PP2PPBP/RNBQK2R b KQkq -",
    // Middlegames.
    "r1bq1rk1/pp2bppp/2n1pn2/3p4/3P4/2NB1N2/PP3PPP/R1BQ1RK1 w - -",
    "r2q1rk1/pb1nbppp/1p2pn2/2pp4/3P1B2/2PBPN2/PP1N1PPP/R2QK2R w KQ -",
    "2rq1rk1/pp1bppbp/3p1np1/4n3/3NP3/1BN1BP2/PPPQ2PP/2KR3R w - -",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 b - -",
    "r1b2rk1/2q1bppp/p2ppn2/1p6/3QP3/1BN1B3/PPP2PPP/R4RK1 w - -",
    "3r1rk1/p1q1bppp/1pn1p3/2p5/2P1N3/P3P1P1/1PQ1NP1P/3R1RK1 b - -",
    "r2qr1k1/1b1nbppp/p2ppn2/1p6/3NPP2/2N1B3/PPPQB1PP/R4RK1 w - -",
    "2r2rk1/1bq1bppp/p3pn2/1p1p4/3P4/P1NBPN2/1PQ2PPP/2R2RK1 w - -",
    "r3kb1r/1bqn1ppp/p2ppn2/1p4B1/3NP3/2N2Q2/PPP1BPPP/2KR3R b kq -",
    "r1bqr1k1/pp1nbppp/2p2n2/3p2B1/3P4/2NBPN2/PPQ2PPP/R4RK1 b - -",
    "1r3rk1/3bppbp/q2p1np1/2pP4/4P3/1PN2NPP/P2B1PB1/R2QR1K1 b - -",
    "r2q1rk1/1p2bpp1/p1n1bn1p/3pp3/8/PP1P1NPP/1BQNPPB1/2R2RK1 w - -",
    // Sharp and tactical.
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -",
    "r1bq2rk/pp3pbp/2p1p1pQ/7P/3P4/2PB1N2/PP3PPR/2KR4 w - -",
    "2rr3k/pp3pp1/1nnqbN1p/3pN3/2pP4/2P3Q1/PPB4P/R4RK1 w - -",
    "r2q2k1/pp1rbppp/4pn2/2P5/1P3B2/6P1/P3QPBP/1R3RK1 w - -",
    "3q1rk1/4bp1p/1n2P2Q/1p1p1p2/6r1/Pp2R2N/1B4PP/7K w - -",
    "r1b1kb1r/pp2pppp/2n2q2/3p4/2PP4/5N2/PP3PPP/R1BQKB1R w KQkq -",
    "5rk1/1ppb3p/p1pb4/6q1/3P1p1r/2P1R2P/PP1BQ1P1/5RKN w - -",
    "r1b1r1k1/1ppn1p1p/3pnqp1/8/p1P1P3/5P2/PbNQNBPP/1R2RB1K w - -",
    // Endgames.
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - -",
    "8/5pk1/4p1p1/3pP2p/3P1P1P/3K2P1/8/8 w - -",
    "8/8/1p1k4/p1p2p2/P1P2P2/1P1K4/8/8 w - -",
    "6k1/5pp1/4p2p/8/3R4/4P1P1/r4PKP/8 w - -",
    "8/pp3k2/2p2pb1/8/3N2p1/1P4P1/P4PK1/8 b - -",
    "4k3/1p3pp1/p1n1p2p/8/2B1P3/P3KP2/1P4PP/8 w - -",
    "8/1p3pkp/p1r3p1/3n4/8/1PR3P1/P3NP1P/6K1 b - -",
    "6k1/1p3pp1/p1q4p/8/1P6/P2Q2P1/5P1P/6K1 w - -",
    "8/3k4/3p4/2pPp3/2P1P3/4KB2/8/5b2 w - -",
    "3r2k1/p4pp1/1p5p/2p5/2P1n3/1P2BP2/P5PP/3R2K1 b - -",
    "8/6pk/1R5p/p1p5/P1P1p3/4P2P/r5PK/8 w - -",
    "8/k7/3p4/p2P1p2/P2P1P2/8/8/K7 w - -",
};

// The nodes that one thread takes for all of them at that depth: what a change to the search that
// is only to be cleaner or faster must not change.
inline constexpr int SIGNATURE_DEPTH = 6;
inline constexpr std::uint64_t SIGNATURE = 1271718;

}  // namespace ombrin
