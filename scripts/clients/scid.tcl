# Run by tkscid: has scid play a serious game and says how it went. The engine's command, the position
# and the number of half-moves are in the environment; scid's user plays any legal move.

proc begin {} {
  if {[info commands ::sergame::play] eq ""} { return [after 500 begin] }
  set ::engines(list) [list [list engine $::env(CLIENT_COMMAND) "" . 0 0 "" 1 {}]]
  sc_game startBoard $::env(CLIENT_FEN)
  updateBoard -pgn
  array set ::sergame::engineListBox {0 0}
  array set ::uci::uciInfo {movetime3 300 wtime3 60000 btime3 60000 winc3 0 binc3 0}
  foreach {setting value} {startFromCurrent 1 isOpening 0 useBook 0 coachIsWatching 0} {
    set ::sergame::$setting $value
  }
  set ::sergame::ponder $::env(CLIENT_PONDER)
  set ::sergame::timeMode [expr {$::sergame::ponder ? "timebonus" : "movetime"}]
  after 300 user
  ::sergame::play 0
}

proc user {} {
  set moves [sc_game moves coord list]
  if {[llength $moves] >= $::env(CLIENT_PLIES)} {
    puts "played: $moves"
    exit
  }
  if {[info exists ::playMode] && [sc_pos side] eq $::sergame::playerColor} {
    # Every other time the move that the engine expects, when it ponders on one.
    set expected $::uci::uciInfo(ponder3)
    if {$::sergame::ponder && $expected ne "" && [llength $moves] % 4 == 2} {
      addMoveUCI $expected
    } else {
      addSanMove [lindex [sc_pos moves] 0]
    }
  }
  after 300 user
}

after 1000 begin
after [expr {1000 * $::env(CLIENT_SECONDS)}] {puts "stands still after: [sc_game moves coord list]"; exit}
set argv {}
source [file join [file dirname [info nameofexecutable]] scid]
