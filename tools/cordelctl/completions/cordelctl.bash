# Completion of cordelctl for bash.

_cordelctl_documents() {
    cordelctl --json doctor 2>/dev/null | sed -n 's/^ *"document": "\(.*\)",$/\1/p'
}

_cordelctl_containers() {
    cordelctl tree "$@" 2>/dev/null | sed -n 's/^  \([^ ][^ ]*\).*/\1/p'
}

_cordelctl() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
    local global="--help --version --printer --language --json"
    local verb="" family="" word i
    COMPREPLY=()

    case $prev in
    --printer | --for)
        mapfile -t COMPREPLY < <(compgen -W "$(_cordelctl_documents | grep '\.xml$')" -- "$cur")
        return
        ;;
    --language)
        mapfile -t COMPREPLY < <(compgen -W "$(_cordelctl_documents | grep -v '\.xml$' | grep -vx main)" -- "$cur")
        return
        ;;
    --type)
        mapfile -t COMPREPLY < <(compgen -W "1 2 5 6 8" -- "$cur")
        return
        ;;
    --profile)
        mapfile -t COMPREPLY < <(compgen -W "rgb printer linked" -- "$cur")
        return
        ;;
    esac

    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        case $word in
        --printer | --language) i=$((i + 1)) ;;
        -*) ;;
        *)
            if [ -z "$family" ]; then
                family=$word
            elif [ -z "$verb" ]; then
                verb=$word
            fi
            ;;
        esac
    done

    local options="" words="" files=no
    case $family in
    "")
        words="init doctor restore show tree diff get set clear copy string filter storage space partition pcl id job
            files export import"
        ;;
    init) options="--force --strings" ;;
    doctor)
        words=$(_cordelctl_documents)
        files=yes
        ;;
    restore) ;;
    show)
        options="--texts"
        words=$(_cordelctl_containers)
        ;;
    tree) options="--texts" ;;
    diff)
        options="--texts"
        words=$(_cordelctl_documents)
        files=yes
        ;;
    get | set)
        options="--where"
        words=$(_cordelctl_containers)
        ;;
    clear) words=$(_cordelctl_containers) ;;
    copy) [ -n "$verb" ] && words=$(_cordelctl_containers) || words="property element" ;;
    string)
        options="--where"
        words=$(_cordelctl_containers --texts)
        ;;
    filter) words=$(_cordelctl_containers --texts) ;;
    storage)
        case $verb in
        "") words="report show" ;;
        report)
            options="--add"
            files=yes
            ;;
        esac
        ;;
    space) options="--for" ;;
    partition)
        case $verb in
        "") words="add show copy" ;;
        add) options="--size --percent --image --flash" ;;
        copy) options="--image" ;;
        esac
        ;;
    pcl) ;;
    id)
        case $verb in
        "") words="check validate next" ;;
        check) files=yes ;;
        next) words="font macro overlay rgb printer linked" ;;
        esac
        ;;
    job)
        case $verb in
        "") words="add list" ;;
        add) options="--type --copies --stored" ;;
        esac
        ;;
    files)
        case $verb in
        "") words="add list tick untick edit" ;;
        add)
            options="--type --profile --volume --folder --component"
            files=yes
            ;;
        list) options="--ticked --all" ;;
        tick | untick)
            options="--all"
            files=yes
            ;;
        edit)
            options="--id --volume --path --component"
            files=yes
            ;;
        esac
        ;;
    export | import) files=yes ;;
    esac

    if [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options $global" -- "$cur")
        return
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$cur")
    if [ $files = yes ]; then
        local paths
        mapfile -t paths < <(compgen -f -- "$cur")
        COMPREPLY+=("${paths[@]}")
        compopt -o filenames 2>/dev/null
    fi
}

complete -F _cordelctl cordelctl
