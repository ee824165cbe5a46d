'use strict';
// An administrator of a private service.

const { execFileSync } = require('node:child_process');
const fs = require('node:fs');
const path = require('node:path');

const serviceFile = (workplace) => path.join(workplace, 'corvane-rtc/service.json');

/** What a workplace's service says to a request, or to the connection when it refuses that. */
function administrate(workplace, body, { plugin = 'videoroom', secret = readService(workplace).secret } = {}) {
  const { port } = readService(workplace);
  const script = `
    const socket = new WebSocket('ws://127.0.0.1:${port}', 'janus-protocol');
    const send = (message) => new Promise((resolve) => {
      socket.onmessage = ({ data }) => {
        const answer = JSON.parse(data);
        if (answer.janus !== 'ack' && answer.transaction === 't') resolve(answer);
      };
      socket.send(JSON.stringify({ transaction: 't', apisecret: '${secret}', ...message }));
    });
    const end = (answer) => {
      console.log(JSON.stringify(answer));
      process.exit();
    };
    socket.onopen = async () => {
      const created = await send({ janus: 'create' });
      if (created.error) end(created.error);
      const session_id = created.data.id;
      const handle_id = (await send({ janus: 'attach', session_id, plugin: 'janus.plugin.${plugin}' })).data.id;
      end((await send({ janus: 'message', session_id, handle_id, body: ${JSON.stringify(body)} })).plugindata.data);
    };`;
  return JSON.parse(execFileSync(process.execPath, ['--experimental-websocket', '--no-warnings', '-e', script]));
}

/** Where the service of a workplace is, and its secret. */
function readService(workplace) {
  return JSON.parse(fs.readFileSync(serviceFile(workplace)));
}

module.exports = { administrate, readService, serviceFile };
