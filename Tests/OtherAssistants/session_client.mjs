// The official client of the versions with sessions, over HTTP or standard streams: prints what it saw as one line of JSON.
// Arguments: http URL TOKEN, or stdio COMMAND ARGUMENT...
import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StreamableHTTPClientTransport } from '@modelcontextprotocol/sdk/client/streamableHttp.js';
import { StdioClientTransport } from '@modelcontextprotocol/sdk/client/stdio.js';

const [kind, address, ...rest] = process.argv.slice(2);
const transport = kind === 'http'
  ? new StreamableHTTPClientTransport(new URL(address), { requestInit: { headers: { Authorization: `Bearer ${rest[0]}` } } })
  : new StdioClientTransport({ command: address, args: rest });
const client = new Client({ name: 'session client', version: '1' }, { capabilities: {} });
const errors = [];
client.onerror = error => errors.push(error.message);
await client.connect(transport);

const text = result => result.content[0].text;
const call = (name, args) => client.callTool({ name, arguments: args });
const seen = {
  server: client.getServerVersion().name,
  tools: (await client.listTools()).tools.length,
  read: text(await call('read_file', { path: 'Config/DefaultGame.ini' })),
  tree: (await call('get_filesystem_tree', { dir_path: '/' })).structuredContent,
  changed: text(await call('update_file', { path: 'Config/DefaultGame.ini', old_string: '12', new_string: '13' })),
  undone: text(await call('undo_changes', {})),
  failed: (await call('read_file', { path: 'No/Such.h' })).isError,
  unknown: await call('no_such_tool', {}).catch(error => error.code),
  resources: (await client.listResources()).resources.map(each => each.uri),
  templates: (await client.listResourceTemplates()).resourceTemplates.length,
  resource: (await client.readResource({ uri: 'kestrel://project/files/Config/DefaultGame.ini' })).contents[0].text,
  prompts: (await client.listPrompts()).prompts.map(each => each.name),
  prompt: (await client.getPrompt({ name: 'review_blueprint', arguments: { blueprint_name: 'BP_Gate' } })).messages.length,
  completed: (await client.complete({ ref: { type: 'ref/resource', uri: 'kestrel://project/files/{+path}' },
                                      argument: { name: 'path', value: 'Conf' } })).completion.values,
  at_once: (await Promise.all([1, 2, 3, 4].map(() => call('read_file', { path: 'Config/DefaultGame.ini' })))).map(text),
  ping: await client.ping(),
};
if (kind === 'http') {
  await transport.terminateSession();
}
await client.close();
console.log(JSON.stringify({ ...seen, errors }));
