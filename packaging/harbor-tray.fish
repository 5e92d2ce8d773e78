# Completion of harbor-tray(1) for fish.
set -l first 'not __fish_seen_argument -s h -l help -s v -l version -l measure -l related'
complete -c harbor-tray -f
complete -c harbor-tray -n $first -s h -l help -d 'Show how it is used'
complete -c harbor-tray -n $first -s v -l version -d 'Show the version'
complete -c harbor-tray -n $first -l measure -d 'Show what each cleanup would remove'
complete -c harbor-tray -n $first -l related -r -F -d 'Show the related files of an application'
complete -c harbor-tray -n '__fish_seen_argument -l measure -l related' -l json -d 'The same for another program to read'
