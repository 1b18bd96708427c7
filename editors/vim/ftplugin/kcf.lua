-- Let g:kcf_server be v:false to go without the language server.
require('kcf').start()
