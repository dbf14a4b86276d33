# shellcheck shell=bash
# A virtual display with a window manager, for programs that need a screen. To be sourced.
# start_display WIDTHxHEIGHT: sets DISPLAY and arranges for the display to end with the script.

start_display() {
    local number_file
    number_file=$(mktemp)
    Xvfb -displayfd 3 -screen 0 "$1x24" -nolisten tcp 3>"$number_file" >/dev/null 2>&1 &
    display_pids="$!"
    for _ in $(seq 100); do
        [ -s "$number_file" ] && break
        sleep 0.1
    done
    DISPLAY=":$(cat "$number_file")"
    rm -f "$number_file"
    export DISPLAY
    # A desktop's own settings would change what the windows look like.
    unset WAYLAND_DISPLAY QT_QPA_PLATFORM QT_STYLE_OVERRIDE
    XDG_RUNTIME_DIR=$(mktemp -d)
    chmod 700 "$XDG_RUNTIME_DIR"
    export XDG_RUNTIME_DIR
    # Without settings of its own it would take the user's; it puts a message up for a file without any.
    echo '<openbox_config xmlns="http://openbox.org/3.4/rc"/>' >"$XDG_RUNTIME_DIR/openbox.xml"
    openbox --config-file "$XDG_RUNTIME_DIR/openbox.xml" >/dev/null 2>&1 &
    display_pids="$display_pids $!"
    # The window manager has taken over once it has named itself.
    for _ in $(seq 100); do
        xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && break
        sleep 0.1
    done
}

stop_display() {
    # shellcheck disable=SC2086
    kill ${display_pids:-} 2>/dev/null || true
    rm -rf "${XDG_RUNTIME_DIR:?}"
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

window_called() {
    [ -n "$(xdotool search --onlyvisible --name "$1")" ]
}

# activate CAPTION: brings the window to the front, once it is there.
activate() {
    wait_for window_called "$1"
    xdotool windowactivate --sync "$(xdotool search --onlyvisible --name "$1" | tail -n 1)"
}

# take_nuclide_database: at a first start, Enter takes the database that comes with the program.
take_nuclide_database() {
    activate '^OPEN NuclDB file'
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
