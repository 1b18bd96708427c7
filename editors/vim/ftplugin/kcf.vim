" KCF command files: comments, folding, and :make.
if exists('b:did_ftplugin')
  finish
endif
let b:did_ftplugin = 1
let b:undo_ftplugin = 'setlocal comments< commentstring< formatoptions< iskeyword< shiftwidth< expandtab<'
      \ . ' foldmethod< foldlevel< makeprg< errorformat<'

setlocal comments=s1:/*,mb:*,ex:*/,:// commentstring=//\ %s
setlocal formatoptions-=t formatoptions+=croql
setlocal iskeyword=48-57,65-90,97-122,_,-
" What kcf format writes.
setlocal shiftwidth=2 expandtab
" All blocks are open at first.
setlocal foldmethod=syntax foldlevel=99
compiler kcf
