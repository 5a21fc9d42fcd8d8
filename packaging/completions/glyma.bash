# bash completion for glyma(1)

_glyma()
{
    local current=${COMP_WORDS[COMP_CWORD]}
    local command=${COMP_WORDS[1]}
    COMPREPLY=()
    if ((COMP_CWORD == 1)); then
        mapfile -t COMPREPLY < <(compgen -W \
            'search info import doctor preferences quit --help --version' -- "$current")
        return
    fi
    local words=--help
    case $command in
        search) words='--json --limit --fuzzy --help' ;;
        info) words='--json --selection --panel --limit --help' ;;
        import) words='--force --help' ;;
        doctor) words='--json --help' ;;
        preferences) words='@GLYMA_PREFERENCES_TABS@ --help' ;;
    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -F _glyma glyma
