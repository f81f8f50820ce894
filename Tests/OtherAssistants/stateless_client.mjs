// The official client of the version without sessions, which finds out by itself that the server speaks it. Prints what it
// saw as one line of JSON. Arguments: URL TOKEN
import { Client, StreamableHTTPClientTransport } from '@modelcontextprotocol/client';

const [address, token] = process.argv.slice(2);
const client = new Client({ name: 'stateless client', version: '1' }, { versionNegotiation: { mode: 'auto' } });
await client.connect(new StreamableHTTPClientTransport(new URL(address), {
  requestInit: { headers: { Authorization: `Bearer ${token}` } } }));
const text = result => result.content[0].text;
const call = (name, args) => client.callTool({ name, arguments: args });
const read = text(await call('read_file', { path: 'Config/DefaultGame.ini' }));
const change = await call('update_file', { path: 'Config/DefaultGame.ini', old_string: '12', new_string: '13' });
const changes_id = change.content[1].text.match(/^changes_id: (\w+)$/m)[1];
const seen = {
  version: client.getNegotiatedProtocolVersion(),
  tools: (await client.listTools()).tools.length,
  read,
  changed: text(change),
  undone: text(await call('undo_changes', { changes_id })),
  failed: (await call('read_file', { path: 'No/Such.h' })).isError,
  resource: (await client.readResource({ uri: 'kestrel://project/tree' })).contents[0].mimeType,
  prompts: (await client.listPrompts()).prompts.length,
};
await client.close();
console.log(JSON.stringify(seen));
