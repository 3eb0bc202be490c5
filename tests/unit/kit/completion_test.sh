#!/bin/bash
# completion_test.sh PROGRAM COMPLETION: tests what bash would offer.

program=$1
source "$2"
failed=0

# offers WORDS-OF-THE-LINE... : the last word is the one that is being typed
offers() {
    COMP_WORDS=("$program" "$@")
    COMP_CWORD=$#
    local last=$(($# - 1))
    _plenxkit "$program" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[last]}"
    echo "${COMPREPLY[*]}"
}

expect() {
    local wanted=$1 got
    shift
    got=$(offers "$@")
    if [ "$got" != "$wanted" ]; then
        echo "plenxkit $*: offered '$got' instead of '$wanted'"
        failed=1
    fi
}

expect 'host doctor message trace scenario judge verify' ''
expect '--help --version' -
expect 'decode encode log list' message ''
expect 'decode' message d
expect '--as' message decode --a
expect 'DeleteGroup DeviceOnline DeviceOffline DisconnectNotify DiskNameNotify' message decode --as D
expect 'reply' message decode --as r
expect 'CreateGroup ConnectNotify' message encode C
expect 'PingService' message list Pi
expect '' message encode CreateGroup x
expect '--broken' message log --b
expect 'auto always never' host --color ''
expect '' host --script ''
expect 'list show run' scenario ''
expect '--host' scenario run --ho
expect 'office pc phone' judge --role ''
expect '--service --strict --soak' judge --s

# Nothing is offered where a file belongs: bash then offers files itself.
expect '' message log "${2%sh}"
expect '' message decode --file "${2%sh}"

# Every option that the help knows is offered.
for command in host doctor 'message decode' 'message encode' 'message log' 'message list' trace \
    scenario 'scenario run' judge; do
    for option in $("$program" $command --help | grep -o -- '^  [^ ]*--[a-z-]*' | sed 's/.*--/--/'); do
        expect "$option" $command "$option"
    done
done
exit $failed
