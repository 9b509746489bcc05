#!/usr/bin/env node
// Runs the Khronos glTF validator on each file named on the command line and fails on
// any error or warning. The validator comes from npm into a project-local folder:
//   npm install --prefix build/tools gltf-validator
// usage: NODE_PATH=build/tools/node_modules node tests/tools/gltf-validate.js FILE...
'use strict';
const fs = require('fs');
const path = require('path');
const validator = require('gltf-validator');

async function validate(file) {
    const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(file)), {
        uri: path.basename(file),
        externalResourceFunction: (uri) =>
            new Promise((resolve, reject) => {
                fs.readFile(path.join(path.dirname(file), decodeURIComponent(uri)), (error, data) =>
                    error ? reject(error.toString()) : resolve(new Uint8Array(data)));
            }),
    });
    const issues = report.issues;
    console.log(`${file}: ${issues.numErrors} errors, ${issues.numWarnings} warnings, ` +
                `${issues.numInfos} infos, ${issues.numHints} hints (validator ${report.validatorVersion})`);
    for (const message of issues.messages)
        console.log(`  ${['error', 'warning', 'info', 'hint'][message.severity]} ${message.code}: ` +
                    `${message.message} (${message.pointer || ''})`);
    return issues.numErrors === 0 && issues.numWarnings === 0;
}

(async () => {
    let good = true;
    for (const file of process.argv.slice(2)) good = (await validate(file)) && good;
    process.exit(good ? 0 : 1);
})().catch((error) => {
    console.error(`gltf-validate: ${error}`);
    process.exit(2);
});
