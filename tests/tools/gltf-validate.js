#!/usr/bin/env node
// Fails on any error or warning of the Khronos glTF validator (scripts/gltf-validator
// installs it) for each file. usage: NODE_PATH=build/tools/node_modules node THIS FILE...
'use strict';
const fs = require('fs');
const path = require('path');
const validator = require('gltf-validator');

async function validate(file) {
    const report = await validator.validateBytes(new Uint8Array(fs.readFileSync(file)), {
        uri: path.basename(file),
        externalResourceFunction: async (uri) => new Uint8Array(
            await fs.promises.readFile(path.join(path.dirname(file), decodeURIComponent(uri)))),
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
