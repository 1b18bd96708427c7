" kcf check as a compiler: of the file, and of what is given to :make, such as a folder.
if exists('current_compiler')
  finish
endif
let current_compiler = 'kcf'

if exists(':CompilerSet') != 2
  command -nargs=* CompilerSet setlocal <args>
endif

execute 'CompilerSet makeprg=' . escape(get(g:, 'kcf_path', 'kcf'), ' \|"')
      \ . '\ check\ --color\ never\ %:S'
CompilerSet errorformat=%Eerror[%*[-a-z0-9/]]:\ %m,%Wwarning[%*[-a-z0-9/]]:\ %m,
      \%Z%*[\ ]-->\ %f:%l:%c,%-G%.%#
