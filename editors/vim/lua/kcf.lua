-- Neovim's own client of `kcf language-server`.
local M = {}

-- Clients by their folders, for Neovim 0.7, which does not find a running one by itself.
local clients = {}

function M.start()
  local program = vim.g.kcf_path or 'kcf'
  if vim.g.kcf_server == false or vim.fn.executable(program) == 0 then
    return
  end
  local folder = vim.fn.expand('%:p:h')
  local config = { name = 'kcf', cmd = { program, 'language-server' }, root_dir = folder }
  if vim.lsp.start then
    vim.lsp.start(config)
    return
  end
  config.on_exit = function()
    clients[folder] = nil
  end
  clients[folder] = clients[folder] or vim.lsp.start_client(config)
  vim.lsp.buf_attach_client(0, clients[folder])
end

return M
