# Completion of plenxmsg for bash: source this file, or put it into
# /usr/share/bash-completion/completions/plenxmsg. The names come from the program itself.

_plenxmsg_messages() {
    "$1" list 2>/dev/null | sed -n 's/^ *[0-9][0-9]*  \([A-Za-z]*\).*/\1/p'
}

_plenxmsg() {
    local program=$1 word=$2 before=$3 command=${COMP_WORDS[1]} words=
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        words='decode encode log list --help --version'
    elif [ "$before" = --as ]; then
        words="$(_plenxmsg_messages "$program") reply"
    elif [[ $before =~ ^--(file|from|output)$ ]]; then
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        return
    else
        case $command in
        decode) words='--as --file --json --help' ;;
        encode) words='--from --binary --output --help' ;;
        log) words='--broken --json --help' ;;
        list) words='--json --help' ;;
        esac
        case $command:$word in
        log:-*) ;;
        log:*)
            mapfile -t COMPREPLY < <(compgen -f -- "$word")
            return
            ;;
        encode:* | list:*)
            if [ "$COMP_CWORD" -eq 2 ]; then
                words+=" $(_plenxmsg_messages "$program")"
                [ "$command" != encode ] || words+=' reply'
            fi
            ;;
        esac
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}

complete -F _plenxmsg plenxmsg plenxmsg.exe
