# SPDX-License-Identifier: GPL-3.0-or-later
# bash completion for tessaly-cli; check_command_line.sh compares it with --help.

_tessaly_cli()
{
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]}
    local commands="import relink check sound image create pack verify firmware show"
    local command= i
    # The first word that is neither an option nor the value of --app-folder.
    for (( i = 1; i < COMP_CWORD; i++ )); do
        case ${COMP_WORDS[i]} in
            --app-folder) (( i++ )) ;;
            -*) ;;
            *) command=${COMP_WORDS[i]}; break ;;
        esac
    done

    local options= ending=
    case $command in
        "")       options="-h --help --version --app-folder" ;;
        import)   options="-h --help -o --output --append --exported --give-each-its-file --titles-from-tags" ending="txt|m3u|M3U|m3u8|pls" ;;
        relink)   options="-h --help --folder --card --dry-run" ending=crd2 ;;
        check)    options="-h --help --card --json --strict" ending=crd2 ;;
        sound)    options="-h --help --json" ending=crd2 ;;
        image)    options="-h --help -o --output --hex --identifier" ending=crd2 ;;
        create)   options="-h --help --card --settings-only --no-verify --erase --yes --strict" ending=crd2 ;;
        pack)     options="-h --help -o --output" ending=crd2 ;;
        verify)   options="-h --help" ;;
        firmware) options="-h --help --yes" ;;
        show)     options="-h --help --json" ending="crd2|xd3|hex|bin" ;;
    esac

    COMPREPLY=()
    case $previous in
        --card|--folder|--app-folder) _tessaly_cli_paths -d ""; return ;;
        -o|--output)
            if [[ $command == pack ]]; then _tessaly_cli_paths -d ""; return; fi
            _tessaly_cli_paths -f "crd2|bin"; return ;;
        --hex)               _tessaly_cli_paths -f "xd3|hex"; return ;;
        --identifier)        return ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$current")
    elif [[ $command == verify || $command == firmware ]]; then
        _tessaly_cli_paths -d ""
    else
        _tessaly_cli_paths -f "$ending"
    fi
}

# Folders, and with -f the files with one of the endings.
_tessaly_cli_paths()
{
    compopt -o filenames 2>/dev/null
    local path
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
    [[ $1 == -f ]] || return 0
    while IFS= read -r path; do
        [[ ! -d $path && $path =~ \.($2)$ ]] && COMPREPLY+=("$path")
    done < <(compgen -f -- "$current")
    return 0
}

complete -F _tessaly_cli tessaly-cli
