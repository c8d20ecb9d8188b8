# SPDX-License-Identifier: MIT
# Completion of velmarcon's options and their values, for fish.

# The lenses of the user's own database: code, tab, name.
function __velmarcon_lens_codes
    set -l database (velmarcon --where 2>/dev/null)/lensdb.ini
    test -r "$database"; and awk '
        /^\[[01]+\]/ { code = substr($0, 2, 6) }
        /^Model *=/ { sub(/^Model *= */, ""); print code "\t" $0 }' "$database"
end

# Whether only the command itself comes before the word that is completed.
function __velmarcon_is_first
    test (count (commandline -opc)) -eq 1
end

complete -c velmarcon -f
complete -c velmarcon -o i -r -F -d 'Folder or file to convert'
complete -c velmarcon -o o -x -a '(__fish_complete_directories)' -d 'Folder for the DNGs'
complete -c velmarcon -o v -d 'Print each step'
complete -c velmarcon -o r -d 'Refresh: replace existing DNGs'
complete -c velmarcon -o p -d 'Put a preview into the DNG'
complete -c velmarcon -o b -d 'Write the black level, or subtract the dark frame'
complete -c velmarcon -o l -x -a '(__velmarcon_lens_codes)' -d 'Lens data from the lens database'
complete -c velmarcon -o c -d 'Name the model "M8RAW Digital Camera"'
complete -c velmarcon -o s -d 'Repair defective columns, subtract dark levels'
complete -c velmarcon -o sd -d 'Make the dark reference from one dark exposure'
complete -c velmarcon -o st -d 'Like -s, but paint the listed rows white'
complete -c velmarcon -o sb -d 'Like -s, but also estimate an offset for every row'
complete -c velmarcon -n __velmarcon_is_first -l help -d 'Print the options'
complete -c velmarcon -n __velmarcon_is_first -l version -d 'Print the version'
complete -c velmarcon -n __velmarcon_is_first -l where -d 'Print the data folder'
