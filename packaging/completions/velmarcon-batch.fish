# SPDX-License-Identifier: MIT
# Completion of velmarcon-batch's options and their values, for fish. Behind "--" stand velmarcon's own options, but for
# those that this command gives itself.

function __velmarcon_batch_own
    not contains -- -- (commandline -opc)
end

complete -c velmarcon-batch -f
complete -c velmarcon-batch -n __velmarcon_batch_own -a '(__fish_complete_directories)'
complete -c velmarcon-batch -n __velmarcon_batch_own -s o -l output -x -a '(__fish_complete_directories)' -d 'Write the DNGs there'
complete -c velmarcon-batch -n __velmarcon_batch_own -s j -l jobs -x -d 'How many to run at a time'
complete -c velmarcon-batch -n __velmarcon_batch_own -l hosts -x -a '(__fish_print_hostnames)' -d 'Have other machines do it'
complete -c velmarcon-batch -n __velmarcon_batch_own -l fresh -d 'With -r: do all pictures, also those already refreshed'
complete -c velmarcon-batch -n __velmarcon_batch_own -l from0 -r -F -d 'Only the pictures of a list'
complete -c velmarcon-batch -n __velmarcon_batch_own -l newest-first -d 'Begin with the newest pictures'
complete -c velmarcon-batch -n __velmarcon_batch_own -l rename -d 'Number DNGs whose names another picture has'
complete -c velmarcon-batch -n __velmarcon_batch_own -l keep-time -d 'Give each DNG the time of its RAW file'
complete -c velmarcon-batch -n __velmarcon_batch_own -l accept-damaged -d 'Take damaged pictures for success'
complete -c velmarcon-batch -n __velmarcon_batch_own -l anyway -d 'Begin even without enough room'
complete -c velmarcon-batch -n __velmarcon_batch_own -l no-verify -d 'Do not read the DNGs back'
complete -c velmarcon-batch -n __velmarcon_batch_own -l verify -d 'Convert nothing, prove what is there'
complete -c velmarcon-batch -n __velmarcon_batch_own -l checksums -d 'Write SHA256SUMS'
complete -c velmarcon-batch -n __velmarcon_batch_own -l json -r -F -d 'A line of JSON for each picture'
complete -c velmarcon-batch -n __velmarcon_batch_own -l notify -d 'Tell the desktop at the end'
complete -c velmarcon-batch -n __velmarcon_batch_own -s n -l dry-run -d 'List what would be done'
complete -c velmarcon-batch -n __velmarcon_batch_own -s q -l quiet -d 'Tell of failures only'
complete -c velmarcon-batch -n __velmarcon_batch_own -l state -x -a '(__fish_complete_directories)' -d 'Folder of the reports'
complete -c velmarcon-batch -n __velmarcon_batch_own -s h -l help -d 'Print the options'
complete -c velmarcon-batch -n __velmarcon_batch_own -l version -d 'Print the version'
complete -c velmarcon-batch -n 'not __velmarcon_batch_own' -a '-v\t"Name each step"
-r\t"Refresh: overwrite existing DNGs"
-p\t"Put a preview into the DNG"
-b\t"Set the black level, or subtract the dark frame"
-l\t"Lens data from the lens database"
-c\t"Name the model M8RAW Digital Camera"
-s\t"Repair columns, remove the dark level of each"
-st\t"As -s, but paint the listed columns white"
-sb\t"As -s, with an offset estimated for each row"'
