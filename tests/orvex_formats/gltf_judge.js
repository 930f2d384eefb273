// What gltf-validator says of each file: a line of JSON a file.
const fs = require('fs');
const validator = require(process.argv[2]);

(async () => {
  for (const path of process.argv.slice(3)) {
    try {
      const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(path)), {maxIssues: 20});
      const first = report.issues.messages.find(message => message.severity === 0);
      const info = report.info || {}; // there is none of a file that isn't JSON
      console.log(JSON.stringify({
        valid: report.issues.numErrors === 0, first: first ? first.code : '',
        vertices: info.totalVertexCount, triangles: info.totalTriangleCount,
        materials: info.materialCount, draws: info.drawCallCount,
      }));
    } catch (error) {
      console.log(JSON.stringify({valid: false, first: String(error)}));
    }
  }
})();
