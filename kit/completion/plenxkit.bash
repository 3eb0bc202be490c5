# Completion of plenxkit for bash: source this file, or put it into
# /usr/share/bash-completion/completions/plenxkit. The program itself gives the words. Where it
# gives no words, bash offers files.

_plenxkit() {
    local words kind='^[^-]'
    [[ $2 != -* ]] || kind='^-'
    words=$("$1" complete "${COMP_WORDS[@]:1:COMP_CWORD-1}" 2>/dev/null | grep -- "$kind")
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$2")
}

complete -o default -F _plenxkit plenxkit plenxkit.exe
