# SPDX-License-Identifier: MIT
# Completion of velmarcon-calibrate's options and their values, for fish.

# RAW files and folders.
function __velmarcon_calibrate_exposures
    set -l typed (commandline -ct)
    set -l files $typed*.RAW
    string join \n -- $files
    __fish_complete_directories $typed
end

complete -c velmarcon-calibrate -f
complete -c velmarcon-calibrate -a '(__velmarcon_calibrate_exposures)'
complete -c velmarcon-calibrate -l flat -x -a '(__velmarcon_calibrate_exposures)' -d 'Flat exposure, of an even bright area'
complete -c velmarcon-calibrate -l database -r -F -d 'The sensor database'
complete -c velmarcon-calibrate -l report -x -a '(__fish_complete_directories)' -d 'Write a report with pictures'
complete -c velmarcon-calibrate -l dry-run -d 'Do not write the database'
complete -c velmarcon-calibrate -l doubtful -d 'Also write doubtful defects'
complete -c velmarcon-calibrate -l check -d 'Check whether the database fits'
complete -c velmarcon-calibrate -l help -d 'Print the options'
complete -c velmarcon-calibrate -l version -d 'Print the version'
