// Speaks with the language server through vscode-jsonrpc, and writes all that it answers as TypeScript, in
// which the protocol's own types judge it.
//
//     node peer.js KCF FOLDER OUTPUT.ts
'use strict';
const path = require('path');
const fs = require('fs');
const url = require('url');
const child = require('child_process');
const lsp = require('vscode-languageserver-protocol/node');

const [program, folder, output] = process.argv.slice(2);
const server = child.spawn(program, ['language-server', '--stdio']);
const connection = lsp.createMessageConnection(
    new lsp.StreamMessageReader(server.stdout), new lsp.StreamMessageWriter(server.stdin));
const uri = url.pathToFileURL(path.join(folder, 'setup.kcf')).href;
const text = fs.readFileSync(path.join(folder, 'setup.kcf'), 'utf8');
const said = [];
const published = [];

function record(type, value) {
  said.push(`check<${type}>(${JSON.stringify(value)});`);
  return value;
}

function expect(holds, what) {
  if (!holds) {
    throw new Error(what);
  }
}

async function ask(name, params) {
  const result = await connection.sendRequest(lsp[name].type, params);
  return record(`ResultOf<typeof lsp.${name}.type>`, result);
}

// The place behind a text.
function at(found) {
  const before = text.slice(0, text.indexOf(found) + found.length);
  const lines = before.split('\n');
  return {line: lines.length - 1, character: lines[lines.length - 1].length};
}

function publishedWhere(wanted) {
  return new Promise((resolve) => {
    const look = () => {
      const found = published.find(wanted);
      found ? resolve(found) : setTimeout(look, 10);
    };
    look();
  });
}

async function session() {
  connection.onNotification(lsp.PublishDiagnosticsNotification.type, (params) => {
    published.push(record('ParamsOf<typeof lsp.PublishDiagnosticsNotification.type>', params));
  });
  connection.onRequest(lsp.RegistrationRequest.type, (params) => {
    record('lsp.RegistrationParams', params);
  });
  connection.onRequest(lsp.ConfigurationRequest.type, (params) => {
    record('lsp.ConfigurationParams', params);
    return [{checkDelay: 10}];
  });
  const progress = [];
  connection.onRequest(lsp.WorkDoneProgressCreateRequest.type, (params) => {
    record('lsp.WorkDoneProgressCreateParams', params);
    connection.onProgress(lsp.WorkDoneProgress.type, params.token, (value) => {
      progress.push(record('lsp.WorkDoneProgressBegin | lsp.WorkDoneProgressReport | lsp.WorkDoneProgressEnd', value));
    });
  });
  connection.listen();
  const folderUri = url.pathToFileURL(folder).href;
  const told = await ask('InitializeRequest', {
    processId: process.pid, rootUri: folderUri, workspaceFolders: [{uri: folderUri, name: 'setup'}],
    capabilities: {
      window: {workDoneProgress: true},
      workspace: {configuration: true, didChangeWatchedFiles: {dynamicRegistration: true},
                  workspaceEdit: {documentChanges: true}},
      textDocument: {
        completion: {completionItem: {snippetSupport: true}}, publishDiagnostics: {relatedInformation: true},
        documentSymbol: {hierarchicalDocumentSymbolSupport: true}
      }
    }
  });
  expect(told.capabilities.positionEncoding === 'utf-16', 'encoding');
  await connection.sendNotification(lsp.InitializedNotification.type, {});
  const open = (content, name) => connection.sendNotification(lsp.DidOpenTextDocumentNotification.type, {
    textDocument: {uri: name, languageId: 'kcf', version: 1, text: content}});
  await open(text, uri);
  expect((await publishedWhere((each) => each.uri === uri)).diagnostics.length === 0, 'the setup is sound');

  const document = {textDocument: {uri}};
  const range = {start: {line: 0, character: 0}, end: {line: 300, character: 0}};
  const whole = [
    ['DocumentSymbolRequest', {}], ['FoldingRangeRequest', {}], ['DocumentLinkRequest', {}],
    ['SemanticTokensRequest', {}], ['SemanticTokensRangeRequest', {range}], ['InlayHintRequest', {range}],
    ['DocumentFormattingRequest', {options: {tabSize: 2, insertSpaces: true}}],
    ['DocumentRangeFormattingRequest', {range, options: {tabSize: 2, insertSpaces: true}}],
    ['SelectionRangeRequest', {positions: [at('type = we')]}],
    ['WorkspaceSymbolRequest', {query: 'w', workDoneToken: 'w'}],
  ];
  for (const [name, more] of whole) {
    const found = await ask(name, {...document, ...more});
    expect(Array.isArray(found) ? found.length > 0 : found !== null, name);
  }
  for (const place of ['upstream_interface = main', 'file = infl', 'name = inf', 'type = we', 'FRICT', 'slo']) {
    const position = {...document, position: at(place)};
    expect(await ask('HoverRequest', position), 'hover of ' + place);
    await ask('DefinitionRequest', position);
    await ask('ReferencesRequest', {...position, context: {includeDeclaration: true}});
    await ask('DocumentHighlightRequest', position);
    await ask('PrepareRenameRequest', position);
    const list = await ask('CompletionRequest', position);
    expect(list.items.length > 0, 'completion of ' + place);
    await ask('CompletionResolveRequest', list.items[0]);
  }
  const renamed = await ask('RenameRequest', {...document, position: at('string_name = infl'), newName: 'einlauf'});
  expect(renamed.documentChanges.length === 2, 'the mesh is renamed, too');
  const refused = await connection.sendRequest(lsp.RenameRequest.type, {
    ...document, position: at('string_name = infl'), newName: '?'}).catch((error) => error);
  expect(refused.code === -32803, 'a name that is none is refused');

  const faulty = uri.replace('setup', 'faulty');
  await open(fs.readFileSync(path.join(folder, 'faulty.kcf'), 'utf8'), faulty);
  const wrong = await publishedWhere((each) => each.uri === faulty);
  expect(wrong.diagnostics.length > 3, 'faults are told');
  for (const diagnostic of wrong.diagnostics) {
    await ask('CodeActionRequest', {
      textDocument: {uri: faulty}, range: diagnostic.range, context: {diagnostics: [diagnostic]}});
  }
  const misspelt = uri.replace('setup', 'misspelt');
  await open('PROJECT {\n  titel = a\n}\n', misspelt);
  await publishedWhere((each) => each.uri === misspelt);
  const actions = await ask('CodeActionRequest', {
    textDocument: {uri: misspelt}, range: {start: {line: 1, character: 2}, end: {line: 1, character: 2}},
    context: {diagnostics: []}});
  expect(actions.some((each) => each.kind === 'quickfix'), 'a quick fix');

  const large = uri.replace('setup', 'large');
  await open(text.repeat(100), large);
  await publishedWhere((each) => each.uri === large);
  const source = new lsp.CancellationTokenSource();
  const cancelled = connection.sendRequest(
      lsp.SemanticTokensRangeRequest.type, {textDocument: {uri: large}, range: {
        start: {line: 0, character: 0}, end: {line: 30000, character: 0}}}, source.token).catch((error) => error);
  source.cancel();
  const outcome = await cancelled;
  expect(outcome.code === -32800 || Array.isArray(outcome.data), 'a cancelled request is answered');
  expect(progress.some((each) => each.kind === 'begin') && progress.some((each) => each.kind === 'end'),
         'a long check tells of its progress');
  await connection.sendRequest(lsp.ShutdownRequest.type);
  await connection.sendNotification(lsp.ExitNotification.type);
  const status = await new Promise((resolve) => server.on('exit', resolve));
  expect(status === 0, 'the server ends well');
}

const limit = setTimeout(() => {
  console.error('the session takes too long');
  server.kill();
  process.exit(1);
}, 120000);
session().then(() => {
  clearTimeout(limit);
  fs.writeFileSync(output, `import * as lsp from 'vscode-languageserver-protocol/node';
type ResultOf<T> = T extends lsp.RequestType<any, infer R, any> | lsp.RequestType0<infer R, any> ? R : never;
type ParamsOf<T> = T extends lsp.NotificationType<infer P> ? P : never;
function check<T>(value: T): T { return value; }
` + said.join('\n') + '\n');
}).catch((error) => {
  console.error(error);
  server.kill();
  process.exit(1);
});
