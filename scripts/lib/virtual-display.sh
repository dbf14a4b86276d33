# shellcheck shell=bash
# A virtual display with a window manager, for programs that need a screen. To be sourced, by a script
# whose EXIT trap calls stop_display.

# start_display WIDTHxHEIGHT: sets DISPLAY.
start_display() {
    local cookie
    display_folder=$(mktemp -d)
    # Without a secret every user of the machine could watch the display and type into it. The server
    # takes it for whatever number it gets.
    cookie=$(od -An -N16 -tx1 /dev/urandom | tr -d ' \n')
    export XAUTHORITY=$display_folder/authority
    (umask 077 && touch "$XAUTHORITY" && xauth -q add :0 . "$cookie")
    Xvfb -displayfd 3 -screen 0 "$1x24" -nolisten tcp -auth "$XAUTHORITY" \
        3>"$display_folder/number" >/dev/null 2>&1 &
    display_pids=$!
    wait_for test -s "$display_folder/number"
    DISPLAY=:$(cat "$display_folder/number")
    export DISPLAY XDG_RUNTIME_DIR=$display_folder
    xauth -q add "$DISPLAY" . "$cookie"
    # A desktop's own settings would change what the windows look like.
    unset WAYLAND_DISPLAY QT_QPA_PLATFORM QT_STYLE_OVERRIDE
    # Without a file of its own it shows what it thinks of that in a window.
    echo '<openbox_config xmlns="http://openbox.org/3.4/rc"/>' >"$display_folder/openbox.xml"
    openbox --config-file "$display_folder/openbox.xml" >/dev/null 2>&1 &
    display_pids="$display_pids $!"
    wait_for window_manager_named
}

stop_display() {
    # shellcheck disable=SC2086
    kill ${display_pids:-} 2>/dev/null || true
    rm -rf "${display_folder:-}"
}

# wait_for COMMAND...: until the command succeeds, 15 seconds at most.
wait_for() {
    for _ in $(seq 150); do
        "$@" >/dev/null 2>&1 && return 0
        sleep 0.1
    done
    echo "Waited in vain for: $*" >&2
    return 1
}

# The window manager has taken over once it has named itself.
window_manager_named() {
    xprop -root _NET_SUPPORTING_WM_CHECK | grep -q 'window id'
}

window_called() {
    [ -n "$(xdotool search --onlyvisible --name "$1")" ]
}

# activate NAME: gives the keyboard to the window with this name and tells its number.
activate() {
    local window
    wait_for window_called "$1" || return
    window=$(xdotool search --onlyvisible --name "$1" | tail -n 1)
    timeout 15 xdotool windowactivate --sync "$window" || return
    echo "$window"
}

# take_nuclide_database: at a first start, Enter takes the database that comes with the program.
take_nuclide_database() {
    activate '^OPEN NuclDB file' >/dev/null
    xdotool key Return
}

# open_by_keys FILE: types the file's path into the open dialog of the active main window.
open_by_keys() {
    xdotool key g
    wait_for window_called '^Open$'
    xdotool type --delay 5 "$1"
    xdotool key Return
    wait_for window_called "$1 ... Kestrel"
}

ended() { ! kill -0 "$1"; }

# leave_by_keys PID: leaves the program by the menu of its active main window. Fails when it ends badly,
# or not within 15 seconds.
leave_by_keys() {
    xdotool key alt+f x
    wait_for ended "$1" || kill -KILL "$1"
    wait "$1"
}
