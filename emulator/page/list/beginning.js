// What to do as long as there are no receipts.

import {byId, make} from '../base/dom.js';
import {moscowTime} from '../base/format.js';
import {labels} from '../base/texts.js';
import {codeBox, copyButton} from '../code/code.js';
import {plainLines} from '../code/json.js';

function commands(user, group) {
  const receipt = {client: {email: 'buyer@example.com'},
    company: {email: 'shop@example.com', inn: group.inn || '7700000009', payment_address: 'shop.example'},
    items: [{name: 'Milk', price: 75.25, quantity: 2, sum: 150.5, vat: {type: 'vat10'}}],
    payments: [{type: 1, sum: 150.5}], total: 150.5};
  const timestamp = moscowTime(new Date().toISOString());
  return `password='${labels.yourPassword}'
service=${location.origin}/possystem/v4
json='Content-Type: application/json; charset=utf-8'
token=$(curl -sH "$json" -d '{"login":"${user.login}","pass":"'"$password"'"}' $service/getToken | sed 's/.*"token":"\\([^"]*\\).*/\\1/')
curl -H "$json" -H "Token: $token" $service/${group.code}/sell -d '{"timestamp":"${timestamp}","external_id":"curl-'$(date +%s)'","receipt":${JSON.stringify(receipt)}}'`;
}

export function showBeginning(accounts) {
  if (accounts.replay) {
    byId('beginning').replaceChildren(make('p', {className: 'quiet', textContent: labels.replaying}));
    return;
  }
  const [user] = accounts.users;
  const group = accounts.groups.find(one => one.code === user?.groups[0]);
  if (!group) return;
  const text = commands(user, group);
  const fact = (name, value) => [make('dt', {textContent: name}), make('dd', {}, make('code', {textContent: value}))];
  byId('beginning').append(
    make('dl', {className: 'facts'}, ...fact(labels.address, location.origin + '/possystem/v4/'), ...fact(labels.login, user.login),
      ...fact(labels.group, group.code)),
    make('div', {className: 'code-head'}, make('h3', {textContent: labels.byCurl}), copyButton(text, labels.byCurl)),
    codeBox(plainLines(text), labels.byCurl));
}
