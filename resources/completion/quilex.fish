# Completion of quilex for fish. The program itself says what may come next, a line each: a word, a tab, its meaning.
function __quilex_complete
    set -l words (commandline --tokenize --cut-at-cursor --current-process)
    set -l word (commandline --current-token --cut-at-cursor)
    set -l lines ($words[1] complete $words[2..] "$word" 2>/dev/null)
    if test "$lines[1]" = :files
        __fish_complete_path "$word"
    else
        printf '%s\n' $lines
    end
end
complete --command quilex --no-files --keep-order --arguments '(__quilex_complete)'
