// SPDX-License-Identifier: MIT
// The user's browser, and the user in front of it.
//
//     node browser.js FOLDER URL
//
// Opens the page in Chromium and does there what FOLDER/errand says, a JSON object: an `action`,
// and the `name` and `password` to sign in with. Writes what it saw to FOLDER/seen. The driver is
// taken from VEK_BROWSER_DRIVER.
const fs = require('fs');
const { chromium } = require(process.env.VEK_BROWSER_DRIVER);

const [folder, url] = process.argv.slice(2);
const { action, name, password } = JSON.parse(fs.readFileSync(`${folder}/errand`, 'utf8'));
const profile = `${folder}/profile`;

/// Lets the identity provider's page open the program without asking, as a user does once.
function allowRedirects() {
  const allowed = { [new URL(url).origin]: { 'com.vek.app': true } };
  const preferences = { protocol_handler: { allowed_origin_protocol_pairs: allowed } };
  fs.mkdirSync(`${profile}/Default`, { recursive: true });
  fs.writeFileSync(`${profile}/Default/Preferences`, JSON.stringify(preferences));
}

async function signIn(page, word) {
  await page.getByLabel('Name').fill(name);
  await page.getByLabel('Password').fill(word);
  await page.getByRole('button', { name: 'Sign in' }).click();
}

/// What each errand is. Gives what was seen on the way.
const errands = {
  async 'sign in'(page) {
    await signIn(page, password);
    return 'the form';
  },
  async 'mistype the password'(page) {
    await signIn(page, password + '!');
    const problem = await page.locator('#problem').textContent();
    await signIn(page, password);
    return problem;
  },
  async cancel(page) {
    await page.getByRole('button', { name: 'Cancel' }).click();
    return 'the form';
  },
  async close() {
    return 'the form';
  },
};

/// Until the program has taken what the page gives it, or longer than it can need.
async function handOver() {
  const end = Date.now() + 60000;
  while (!fs.existsSync(`${folder}/done`) && Date.now() < end) {
    await new Promise((done) => setTimeout(done, 50));
  }
}

async function main() {
  allowRedirects();
  const options = { executablePath: '/usr/bin/chromium', args: ['--no-sandbox'], headless: true };
  const context = await chromium.launchPersistentContext(profile, options);
  const page = await context.newPage();
  await page.goto(url);
  const seen = await errands[action](page);
  if (action !== 'close') await handOver();
  await context.close();
  return seen;
}

main()
  .catch((error) => `failed: ${error.message}`)
  .then((seen) => {
    fs.writeFileSync(`${folder}/seen.part`, seen);
    fs.renameSync(`${folder}/seen.part`, `${folder}/seen`);
    fs.rmSync(profile, { recursive: true, force: true, maxRetries: 5 });
  });
