-- Works on a setup in neovim with its own client, as someone at the keys does. Ends with status 0 when all is
-- as it should be; else it prints what is not.
local function fail(text)
  io.stderr:write(text .. "\n")
  vim.cmd("cquit")
end

local function expect(holds, text)
  if not holds then
    fail(text)
  end
end

local function wait(text, holds)
  expect(vim.wait(20000, holds, 20), text)
end

local function run()
  local program, setup, faulty = vim.env.KCF, vim.env.SETUP, vim.env.FAULTY
  local client
  local function open(path)
    vim.cmd("edit " .. path)
    client = client or vim.lsp.start_client({
      cmd = { program, "language-server" },
      root_dir = vim.fn.fnamemodify(path, ":h"),
      init_options = { checkDelay = 20 },
    })
    vim.lsp.buf_attach_client(0, client)
    wait("the client does not start", function()
      return #vim.lsp.buf_get_clients(0) > 0
    end)
  end
  local function text()
    return table.concat(vim.api.nvim_buf_get_lines(0, 0, -1, false), "\n")
  end
  local function go(pattern)
    vim.api.nvim_win_set_cursor(0, { 1, 0 })
    expect(vim.fn.search(pattern .. "\\zs", "c") > 0, "there is no " .. pattern)
  end

  -- Diagnostics, also while typing, and a quick fix.
  open(faulty)
  wait("no diagnostics", function()
    return #vim.diagnostic.get(0) > 0
  end)
  expect(vim.diagnostic.get(0)[1].code == "unknown-tag", "another diagnostic")
  vim.ui.select = function(items, _, choose)
    choose(items[1])
  end
  go("  ti")
  vim.lsp.buf.code_action()
  wait("the quick fix does nothing", function()
    return text():find("title = demo", 1, true) ~= nil
  end)
  wait("the diagnostic stays", function()
    local first = vim.diagnostic.get(0)[1]
    return first == nil or first.code ~= "unknown-tag"
  end)

  -- Completion by the keys of neovim.
  open(setup)
  vim.bo.omnifunc = "v:lua.vim.lsp.omnifunc"
  go("type = strick")
  local done = {}
  vim.api.nvim_create_autocmd("CompleteDone", { callback = function()
    done = vim.v.completed_item
  end })
  local keys = vim.api.nvim_replace_termcodes("ciwmann<C-x><C-o>", true, false, true)
  vim.api.nvim_feedkeys(keys, "n", false)
  local step = vim.loop.new_timer()
  step:start(1500, 0, vim.schedule_wrap(function()
    vim.api.nvim_feedkeys(vim.api.nvim_replace_termcodes("<C-y><Esc>", true, false, true), "n", false)
    vim.defer_fn(function()
      local ok, problem = pcall(function()
        expect(text():find("type = manning", 1, true), "completion writes nothing: " .. vim.inspect(done))

        -- Hover shows a window with the documentation.
        go("wall_fric")
        vim.lsp.buf.hover()
        wait("hover shows nothing", function()
          for _, window in ipairs(vim.api.nvim_list_wins()) do
            local lines = vim.api.nvim_buf_get_lines(vim.api.nvim_win_get_buf(window), 0, -1, false)
            if table.concat(lines, "\n"):find("one of 'on', 'off'", 1, true)
              or table.concat(lines, "\n"):find("One of 'on', 'off'", 1, true) then
              return true
            end
          end
          return false
        end)

        go("upstream_interface = main")
        vim.lsp.buf.rename("wehr")
        wait("rename changes nothing", function()
          return select(2, text():gsub("wehr", "")) == 3
        end)

        vim.api.nvim_buf_set_lines(0, 3, 4, false, { "title    =   linked" })
        vim.lsp.buf.formatting_sync(nil, 10000)
        expect(text():find("\n  title = linked\n", 1, true), "formatting changes nothing")

        -- What its own keys lack.
        local document = { textDocument = vim.lsp.util.make_text_document_params() }
        for _, method in ipairs({ "foldingRange", "documentLink", "semanticTokens/full" }) do
          local answers = vim.lsp.buf_request_sync(0, "textDocument/" .. method, document, 10000)
          local _, answer = next(answers or {})
          expect(answer and answer.result and next(answer.result), "no answer to " .. method)
        end
        vim.lsp.stop_client(client)
        wait("the server does not end", function()
          return vim.lsp.client_is_stopped(client)
        end)
      end)
      if not ok then
        fail(tostring(problem))
      end
      vim.cmd("qall!")
    end, 700)
  end))
end

local ok, problem = pcall(run)
if not ok then
  fail(tostring(problem))
end
