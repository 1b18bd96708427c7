" KCF command files: a level for each open brace or parenthesis.
if exists('b:did_indent')
  finish
endif
let b:did_indent = 1
let b:undo_indent = 'setlocal indentexpr< indentkeys<'

setlocal indentexpr=KcfIndent(v:lnum)
setlocal indentkeys=0},0),!^F,o,O

if exists('*KcfIndent')
  finish
endif

" What of a line opens and closes; a brace in a value is text.
function s:Signs(lnum)
  let code = substitute(getline(a:lnum), '/\*.\{-}\*/\|/[/*].*', '', 'g')
  let equals = stridx(code, '=')
  if equals >= 0
    let code = strpart(code, 0, equals) . substitute(strpart(code, equals), '[{}]', '', 'g')
  endif
  return substitute(code, '[^(){}]', '', 'g')
endfunction

function KcfIndent(lnum)
  let before = prevnonblank(a:lnum - 1)
  if before == 0
    return 0
  endif
  " The lines of a comment stay as they stand to each other.
  if a:lnum > 1 && synIDattr(synID(a:lnum, 1, 0), 'name') ==# 'kcfBlockComment'
        \ && synIDattr(synID(before, len(getline(before)), 0), 'name') ==# 'kcfBlockComment'
    return -1
  endif
  let levels = 0
  " What closes at the begin of a line stands left of what it closes already.
  let signs = getline(before) =~# '^\s*[)}]' ? strpart(s:Signs(before), 1) : s:Signs(before)
  for sign in split(signs, '\zs')
    let levels += sign =~# '[({]' ? 1 : -1
  endfor
  let levels -= getline(a:lnum) =~# '^\s*[)}]'
  return max([0, indent(before) + levels * shiftwidth()])
endfunction
