# fish completion for glyma(1)

set -l commands search info import doctor preferences quit

complete -c glyma -f
complete -c glyma -s h -l help -d 'Print the use'
complete -c glyma -n "not __fish_seen_subcommand_from $commands" -l version -d 'Print the version'
complete -c glyma -n "not __fish_seen_subcommand_from $commands" -a search -d 'Print what the picker would list'
complete -c glyma -n "not __fish_seen_subcommand_from $commands" -a info -d 'Say what the characters of a text are'
complete -c glyma -n "not __fish_seen_subcommand_from $commands" -a import -d 'Build the catalogue'
complete -c glyma -n "not __fish_seen_subcommand_from $commands" -a doctor -d 'Say what works here'
complete -c glyma -n "not __fish_seen_subcommand_from $commands" -a preferences -d 'Show the preferences'
complete -c glyma -n "not __fish_seen_subcommand_from $commands" -a quit -d 'End the running program'
complete -c glyma -n '__fish_seen_subcommand_from search info doctor' -l json -d 'As JSON'
complete -c glyma -n '__fish_seen_subcommand_from search info' -l limit -x -d 'Most results'
complete -c glyma -n '__fish_seen_subcommand_from search' -l fuzzy -d 'Accept letters apart'
complete -c glyma -n '__fish_seen_subcommand_from info' -l selection -d 'What was selected last'
complete -c glyma -n '__fish_seen_subcommand_from info' -l panel -d 'In a window'
complete -c glyma -n '__fish_seen_subcommand_from import' -l force -d 'Even if nothing has changed'
complete -c glyma -n '__fish_seen_subcommand_from preferences' -a '@GLYMA_PREFERENCES_TABS@'
