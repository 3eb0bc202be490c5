#!/bin/bash
# completion_test.sh PROGRAM COMPLETION: what bash would offer.

program=$1
source "$2"
failed=0

# offers WORDS-OF-THE-LINE... : the last word is the one that is being typed
offers() {
    COMP_WORDS=("$program" "$@")
    COMP_CWORD=$#
    local last=$(($# - 1))
    _plenxmsg "$program" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[last]}"
    echo "${COMPREPLY[*]}"
}

expect() {
    local wanted=$1 got
    shift
    got=$(offers "$@")
    if [ "$got" != "$wanted" ]; then
        echo "plenxmsg $*: offered '$got' instead of '$wanted'"
        failed=1
    fi
}

expect 'decode encode log list --help --version' ''
expect 'decode' d
expect '--as' decode --a
expect 'DeleteGroup DeviceOnline DeviceOffline DisconnectNotify DiskNameNotify' decode --as D
expect 'reply' decode --as r
expect 'CreateGroup ConnectNotify' encode C
expect 'PingService' list Pi
expect '' encode CreateGroup x
expect '--broken' log --b
expect "$2" log "${2%sh}"
expect "$2" decode --file "${2%sh}"

# Every option that the help knows is offered.
for command in decode encode log list; do
    for option in $("$program" $command --help | grep -o -- '^  [^ ]*--[a-z]*' | sed 's/.*--/--/'); do
        expect "$option" $command "$option"
    done
done
exit $failed
