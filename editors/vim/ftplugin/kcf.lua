-- Neovim's own client, for `kcf language-server`. Let g:kcf_server be v:false to go without it.
local program = vim.g.kcf_path or 'kcf'
if vim.g.kcf_server == false or vim.fn.executable(program) == 0 then
  return
end

local config = {
  name = 'kcf',
  cmd = { program, 'language-server' },
  root_dir = vim.fn.expand('%:p:h'),
}

if vim.lsp.start then
  vim.lsp.start(config)
  return
end

-- Neovim 0.7 does not find a running server by itself.
local id
for _, client in pairs(vim.lsp.get_active_clients()) do
  if client.name == config.name and client.config.root_dir == config.root_dir then
    id = client.id
  end
end
vim.lsp.buf_attach_client(0, id or vim.lsp.start_client(config))
