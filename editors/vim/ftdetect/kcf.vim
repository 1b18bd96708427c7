autocmd BufNewFile,BufRead *.kcf setfiletype kcf
