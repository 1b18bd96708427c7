'use strict';

const { execFile } = require('child_process');
const fs = require('fs');
const path = require('path');
const { promisify } = require('util');
const vscode = require('vscode');
const { LanguageClient } = require('vscode-languageclient/node');
const { placeAt } = require('./place');

let client;
let manual;

function setting(name) {
  return vscode.workspace.getConfiguration('kcf').get(name);
}

/** Runs the program; what it says of its failure is the message of the error. */
async function kcf(...words) {
  try {
    return await promisify(execFile)(setting('path'), words);
  } catch (error) {
    throw new Error(error.code === 'ENOENT' ? missing() : (error.stderr || error.message).trim());
  }
}

function missing() {
  return `The program '${setting('path')}' is not there. Name it in the setting kcf.path.`;
}

async function tell(message) {
  const settings = 'Open Settings';
  if ((await vscode.window.showErrorMessage(message, settings)) === settings) {
    vscode.commands.executeCommand('workbench.action.openSettings', 'kcf.path');
  }
}

/** A command that tells the user why it could not be done. */
function command(name, action) {
  return vscode.commands.registerCommand(name, async () => {
    try {
      await action();
    } catch (error) {
      tell(error.message);
    }
  });
}

async function startServer() {
  if (client) {
    const old = client;
    client = undefined;
    await old.stop().catch(() => {});
  }
  if (!setting('languageServer')) {
    return;
  }
  try {
    await kcf('--version');
    client = new LanguageClient(
      'kcf', 'KCF', { command: setting('path'), args: ['language-server'] },
      { documentSelector: [{ language: 'kcf' }], synchronize: { configurationSection: 'kcf' } });
    await client.start();
  } catch (error) {
    client = undefined;
    tell(`No faults and completion while you type: ${error.message}`);
  }
}

async function checkFolder() {
  const editor = vscode.window.activeTextEditor;
  const folder = (editor && vscode.workspace.getWorkspaceFolder(editor.document.uri)) ||
      (vscode.workspace.workspaceFolders || [])[0];
  if (!folder) {
    throw new Error('Open a folder first: there is none to check.');
  }
  // In a dumb terminal nothing is told of the progress, which would stand between the lines.
  const check = new vscode.ProcessExecution(
    setting('path'), ['check', '--color', 'never', '.'], { cwd: folder.uri.fsPath, env: { TERM: 'dumb' } });
  const task = new vscode.Task({ type: 'kcf' }, folder, 'check', 'kcf', check, '$kcf');
  task.presentationOptions = { reveal: vscode.TaskRevealKind.Silent, clear: true };
  await vscode.tasks.executeTask(task);
  vscode.commands.executeCommand('workbench.actions.view.problems');
}

/** The page of the place, or of the nearest block around it that has one. */
function pageOf(folder, place) {
  for (let blocks = place.blocks; blocks.length > 0; blocks = blocks.slice(0, -1)) {
    const page = path.join(folder, `${blocks.join('.')}.html`);
    if (fs.existsSync(page)) {
      const isWhole = blocks === place.blocks && place.tag;
      return vscode.Uri.file(page).with({ fragment: isWhole ? `tag-${place.tag}` : '' });
    }
  }
  return vscode.Uri.file(path.join(folder, 'index.html'));
}

async function showManual(context) {
  const editor = vscode.window.activeTextEditor;
  const folder = context.globalStorageUri.fsPath;
  // Once for each start of the editor, as the program may be a newer one.
  manual = manual || kcf('manual', '--output', folder);
  try {
    await manual;
  } catch (error) {
    manual = undefined;
    throw error;
  }
  const place = editor ? placeAt(editor.document.getText(), editor.document.offsetAt(editor.selection.active))
    : { blocks: [] };
  await vscode.env.openExternal(pageOf(folder, place));
}

async function preview(context) {
  const editor = vscode.window.activeTextEditor;
  if (!editor || editor.document.languageId !== 'kcf') {
    throw new Error('Open a command file first: there is none to preview.');
  }
  await editor.document.save();
  const setup = editor.document.uri.fsPath;
  const folder = path.join(context.globalStorageUri.fsPath, 'previews');
  fs.mkdirSync(folder, { recursive: true });
  const page = path.join(folder, `${path.basename(path.dirname(setup))}-${path.basename(setup, '.kcf')}.html`);
  await kcf('preview', '--output', page, setup);
  await vscode.env.openExternal(vscode.Uri.file(page));
}

exports.activate = async (context) => {
  context.subscriptions.push(
    command('kcf.checkFolder', checkFolder),
    command('kcf.showManual', () => showManual(context)),
    command('kcf.preview', () => preview(context)),
    vscode.workspace.onDidChangeConfiguration((event) => {
      if (event.affectsConfiguration('kcf.path') || event.affectsConfiguration('kcf.languageServer')) {
        manual = undefined;
        startServer();
      }
    }));
  await startServer();
};

exports.deactivate = () => client && client.stop();
