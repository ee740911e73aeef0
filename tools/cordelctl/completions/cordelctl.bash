# Completion of cordelctl for bash: the program itself says what may stand where.

_cordelctl() {
    local words=() word candidate
    for word in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
        # What is typed so far may be quoted.
        case $word in
        \"* | \'*) word=${word:1} word=${word%[\"\']} ;;
        *) word=${word//\\/} ;;
        esac
        words+=("$word")
    done
    COMPREPLY=()
    while IFS= read -r candidate; do
        [ -n "$candidate" ] && COMPREPLY+=("$(printf '%q' "$candidate")")
    done < <(cordelctl complete -- "${words[@]}" 2>/dev/null)
    if [ ${#COMPREPLY[@]} -eq 0 ]; then
        compopt -o default 2>/dev/null
    fi
}

complete -F _cordelctl cordelctl
