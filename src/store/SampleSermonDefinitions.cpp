// The authored sample sermons that a new library starts with. They are content, written for
// Quillon: each shows a complete outline with a manuscript, summaries at every level and
// scriptures attached where a preacher would attach them.

#include "store/SampleSermons.h"

namespace quillon::store {

namespace {

std::vector<SampleSermonDefinition> makeDefinitions() {
    std::vector<SampleSermonDefinition> definitions;

    definitions.push_back(SampleSermonDefinition{
        .title = "Rest for the Weary",
        .series = "Come and See",
        .focus = "Jesus does not hand tired people a lighter list; he offers himself as their rest.",
        .notes =
            R"(Most of us know what it is to be tired in a way that sleep does not fix. We close our eyes on Saturday night and open them on Sunday morning still carrying the same weight: the conversation we dread, the bill we cannot cover, the prayer that seems to bounce off the ceiling. Into that kind of tiredness Jesus speaks one of the kindest invitations in the whole of scripture: "Come to me, all you who are weary and burdened, and I will give you rest."

Notice first who is invited. Not the strong, not the organised, not the people who already have their spiritual lives in order. The invitation is addressed to the weary. If you came in this morning feeling that you barely made it through the door, you are exactly the person Jesus had in mind. The qualification for coming is simply needing to come.

Notice second what Jesus offers. He does not say, "Come to me and I will give you a better system," or "Come and I will show you seven habits of rested people." He says, "I will give you rest." The rest is a gift, and the giver is the gift. Israel heard the same promise long before, when the Lord told Moses, "My presence will go with you, and I will give you rest." Rest is not first a place or a technique; it is a person who goes with us.

Notice third the surprising picture Jesus uses: a yoke. A yoke is a working tool. It joins two animals so that they pull together. Jesus does not promise that following him means no more work. He promises company in the work. The young ox learns to walk by being yoked beside the older one, and the weight that would crush it alone becomes bearable because someone stronger is carrying most of it. "My yoke is easy and my burden is light" does not mean life will be light. It means we will no longer carry life alone.

And notice, finally, the heart behind the invitation: "I am gentle and humble in heart." Many of us have pictured God as a supervisor who checks our output and sighs at our failures. Jesus describes himself in the opposite way. He is gentle with bruised reeds. He is humble enough to kneel and wash feet. The one who invites you to rest is not waiting to load you with more; he is waiting to lift what you cannot lift.

So what do we do with this? We come. We come in prayer, naming our burdens out loud instead of pretending we have none. We come in worship, letting the truth of who he is recalibrate our anxious minds. We come in community, allowing others who are yoked to Christ to share the load with us. And we come again tomorrow, because rest with Jesus is not a single visit but a way of walking.

This week, take one burden you have been carrying in silence and bring it to him by name. Then listen for the gentle voice that says, "Walk with me. I will carry this with you.")",
        .images = {},
        .topics = {"The Invitation", "The Yoke", "The Gentle Heart"},
        .subtopicAngles = {"Who is invited", "What is promised"},
        .scriptures = {{"Matthew", 11, 28, 30}, {"Exodus", 33, 14, 14}, {"Isaiah", 40, 29, 31}},
        .authoredTopics =
            {
                {"The Invitation",
                 "Jesus calls the weary and burdened, not the strong and organised; needing rest is the only "
                 "qualification.",
                 {
                     {"Who Is Invited",
                      "The invitation is addressed to people who are worn out, including those who feel they "
                      "barely made it through the door.",
                      {{"Matthew 11:28", "The call is to 'all' who labour; no one is too tired to qualify."},
                       {"Isaiah 40:29-31",
                        "God gives strength to the faint; waiting on him renews what effort cannot."}}},
                     {"Rest Is a Person",
                      "Before it is a place or a technique, rest is the presence of God going with us.",
                      {{"Exodus 33:14", "The Lord's answer to Moses' anxiety is not a plan but his presence."},
                       {"Psalm 62:1-2", "The soul finds rest in God alone, its rock and its fortress."}}},
                 }},
                {"The Yoke",
                 "A yoke joins two to pull together; Jesus promises company in the work rather than the end of work.",
                 {
                     {"Learning to Walk Together",
                      "The young ox learns its pace from the one it is yoked to; disciples learn by walking beside "
                      "Jesus.",
                      {{"Matthew 11:29", "'Learn from me' — the yoke is a school as much as a harness."}}},
                     {"A Shared Load",
                      "The weight that would crush us alone becomes bearable when Christ carries most of it.",
                      {{"Matthew 11:30", "Easy and light describe the partnership, not the absence of weight."},
                       {"Galatians 6:2",
                        "Those yoked to Christ also share loads with each other, and so fulfil his law."}}},
                 }},
                {"The Gentle Heart",
                 "Jesus describes himself as gentle and humble, the opposite of the demanding supervisor many "
                 "imagine.",
                 {
                     {"Not a Supervisor",
                      "Our picture of God shapes how we rest; Jesus corrects the picture of a God who only checks "
                      "our output.",
                      {{"Isaiah 42:3", "A bruised reed he will not break: his strength is tender with the weak."}}},
                     {"Coming Again Tomorrow",
                      "Rest with Jesus is a daily way of walking: prayer, worship and community, renewed each "
                      "morning.",
                      {{"Lamentations 3:22-23",
                        "His mercies are new every morning, so yesterday's rest need not carry today."},
                       {"Hebrews 4:9-11",
                        "A Sabbath rest remains for God's people; we are urged to enter it, not earn it."}}},
                 }},
            },
        .id = "5A3C1E70-2B4D-4F61-9E8A-0D7C6B5A4F01",
    });

    definitions.push_back(SampleSermonDefinition{
        .title = "The Shepherd Who Stays",
        .series = "Songs for the Road",
        .focus = "The Lord who leads us to green pastures is the same Lord who walks with us through the dark "
                 "valley.",
        .notes =
            R"(Psalm twenty-three may be the most familiar poem in the world. People who have never opened a Bible can recite its opening line, and many of us first heard it read at a graveside. Because it is so familiar, we can miss how daring it is. David, who had spent his youth guarding sheep on the hills around Bethlehem, looks at his own life and says: I am the sheep, and the Lord is my shepherd.

That is a humbling confession. Sheep are not known for their independence. They wander, they panic, they cannot find water on their own, and they do not see danger until it is upon them. To say "the Lord is my shepherd" is to admit that I need guidance, provision and protection that I cannot supply myself. The good news is in the next line: "I shall not want." The shepherd's care is enough for the sheep's need.

The first half of the psalm is full of gentle pictures. Green pastures, still waters, a restored soul, paths of righteousness. The shepherd leads; he does not drive. He knows that frightened sheep will not drink from rushing streams, so he finds quiet water. He knows that tired sheep will not eat while standing, so he makes them lie down. God's leading is shaped by his knowledge of what we actually need, which is often rest before it is effort.

Then the psalm turns. "Even though I walk through the valley of the shadow of death, I will fear no evil." Notice that the shepherd does not lead around the valley. There are valleys in every life: illness, grief, betrayal, the long night of depression. The psalm never promises that we will avoid them. It promises something better: "for you are with me." And listen to the change in the way David speaks. Up to this point he has talked about the Lord — "he leads me, he restores my soul." In the valley he begins to talk to the Lord — "you are with me." The darkest places are often where our faith moves from description to conversation.

The rod and staff that comfort the sheep are the shepherd's tools for protecting and guiding. The rod drives off wolves; the staff pulls a straying sheep back from the edge. Both are signs that the shepherd is near enough to act.

Finally the picture changes again: a table prepared in the presence of enemies, a head anointed with oil, a cup that overflows. The shepherd has become a host. The one who walked with us through the valley welcomes us to his table, and goodness and mercy — the Hebrew word suggests pursuit — chase us all the days of our lives.

Jesus took this psalm and said, "I am the good shepherd." He is the shepherd who stays when the wolf comes, who lays down his life for the sheep. Whatever valley you are walking through this week, you are not walking alone. Speak to him there. He is with you.)",
        .images = {},
        .topics = {"Led to Green Pastures", "Through the Valley", "A Table Prepared"},
        .subtopicAngles = {"What the shepherd does", "What the sheep receive"},
        .scriptures = {{"Psalm", 23, 1, 6}, {"John", 10, 11, 11}, {"Ezekiel", 34, 11, 12}},
        .authoredTopics =
            {
                {"Led to Green Pastures",
                 "To call the Lord my shepherd is to admit my need, and to find that his care is enough for it.",
                 {
                     {"The Sheep's Confession",
                      "Sheep cannot guide, feed or defend themselves; the psalm begins with honest dependence.",
                      {{"Psalm 23:1", "'I shall not want' is a statement about the shepherd's supply, not the "
                                      "sheep's strength."},
                       {"Isaiah 53:6", "All we like sheep have gone astray — the wandering is universal."}}},
                     {"Leading, Not Driving",
                      "God's leading is shaped by what we need: rest and quiet water before effort.",
                      {{"Psalm 23:2-3", "He makes me lie down; rest is something the shepherd gives, not something "
                                        "the sheep achieves."}}},
                 }},
                {"Through the Valley",
                 "The shepherd does not lead around the valley but walks through it with us.",
                 {
                     {"From Talking About to Talking To",
                      "In the dark the psalm turns from 'he' to 'you': faith moves from description to "
                      "conversation.",
                      {{"Psalm 23:4", "'For you are with me' — the promise is presence, not avoidance."},
                       {"Isaiah 43:2", "Through the waters and the fire, God goes with his people."}}},
                     {"The Rod and the Staff",
                      "The shepherd's tools mean he is near enough to protect and to pull us back.",
                      {{"Ezekiel 34:11-12", "God himself searches for his scattered sheep on a day of clouds and "
                                            "darkness."}}},
                 }},
                {"A Table Prepared",
                 "The shepherd becomes the host: welcome, honour and a goodness that pursues us.",
                 {
                     {"Welcome in the Presence of Enemies",
                      "God's hospitality does not wait for every threat to vanish.",
                      {{"Psalm 23:5", "The table is set while enemies still watch; the cup overflows anyway."}}},
                     {"The Good Shepherd",
                      "Jesus claims the psalm for himself: the shepherd who stays and lays down his life.",
                      {{"John 10:11", "The good shepherd lays down his life; the hired hand runs."},
                       {"John 10:27-28", "No one can snatch the sheep out of his hand."},
                       {"Psalm 23:6", "Goodness and mercy do not merely follow; they pursue us all our days."}}},
                 }},
            },
        .id = "5A3C1E70-2B4D-4F61-9E8A-0D7C6B5A4F02",
    });

    definitions.push_back(SampleSermonDefinition{
        .title = "Faith That Walks",
        .series = "Letters to a Scattered Church",
        .focus = "Living faith is never alone: the faith that saves is the faith that moves toward a neighbour "
                 "in need.",
        .notes =
            R"(James writes to believers who have been scattered from home, living as minorities in cities that did not share their faith. They had heard the good news that we are saved by grace through faith, and some of them seem to have drawn a strange conclusion from it: if faith is what matters, then what we do with our hands does not matter much at all. James will have none of it.

He begins with a scene that is painfully easy to picture. A brother or sister turns up without enough clothes and without food for the day. One of the believers says, warmly and sincerely, "Go in peace; keep warm and eat well." And then does nothing. James asks the obvious question: what good is that? Words of blessing that cost the speaker nothing leave the hungry person exactly as hungry as before. "Faith by itself," he concludes, "if it is not accompanied by action, is dead."

It is important to hear what James is not saying. He is not contradicting Paul, who teaches that we are justified by faith apart from works of the law. Paul is fighting people who thought they could earn God's favour by keeping rules. James is fighting people who thought they could keep God's favour while ignoring their neighbours. Both apostles agree that we are saved by grace. Both agree that grace, once received, changes the way we live. Paul says we are created in Christ Jesus for good works. James says the same thing from the other end: show me your faith, and I will show you mine by what I do.

Then James gives two surprising examples. The first is Abraham, the great father of faith. Abraham believed God, and it was counted to him as righteousness; but that trust became visible when he was willing to offer Isaac, holding nothing back from the God who had promised. His faith and his actions, James says, were working together.

The second example is Rahab, a Canaanite woman with a ruined reputation. She had heard what the God of Israel had done, and she believed. Her faith became real the day she hid two frightened spies and sent them out another way, at the risk of her own life. James deliberately puts the patriarch and the outsider side by side. Living faith does not belong to the respectable. It belongs to anyone who trusts God enough to act.

James ends with an image that every funeral makes clear: a body without breath is dead. Faith without works is like that — it may look like faith from a distance, but there is no life in it.

So here is the question for this week. Where is God inviting your faith to get up and walk? Perhaps there is a neighbour who needs a meal, a colleague who needs an advocate, a family member who needs your time more than your advice. Do not simply wish them well. Let your trust in God move your hands.)",
        .images = {},
        .topics = {"Words That Cost Nothing", "Faith and Works Together", "The Patriarch and the Outsider"},
        .subtopicAngles = {"The problem", "The answer"},
        .scriptures = {{"James", 2, 14, 26}, {"Ephesians", 2, 8, 10}, {"Joshua", 2, 1, 21}},
        .authoredTopics =
            {
                {"Words That Cost Nothing",
                 "A blessing spoken over a hungry neighbour without help leaves them hungry; such faith is dead.",
                 {
                     {"The Warm Dismissal",
                      "James pictures a believer who offers kind words and nothing else to someone in need.",
                      {{"James 2:14-16", "'Go in peace, keep warm' — sincere words that change nothing for the "
                                         "person in front of us."}}},
                     {"Love in Deed and Truth",
                      "The same point runs through the apostles: love shows itself in action.",
                      {{"1 John 3:17-18", "Love not in word or speech, but in deed and in truth."},
                       {"James 2:17", "Faith without action is not weak faith; it is dead."}}},
                 }},
                {"Faith and Works Together",
                 "James and Paul agree: we are saved by grace, and grace received changes how we live.",
                 {
                     {"Two Apostles, One Gospel",
                      "Paul answers those who would earn God's favour; James answers those who would ignore their "
                      "neighbours.",
                      {{"Ephesians 2:8-10", "Saved by grace through faith, and created for good works prepared in "
                                            "advance."},
                       {"Galatians 5:6", "What counts is faith working through love."}}},
                     {"Show Me Your Faith",
                      "Faith is invisible until it acts; works are how it is seen.",
                      {{"James 2:18", "'I will show you my faith by my works' — trust made visible."}}},
                 }},
                {"The Patriarch and the Outsider",
                 "Abraham and Rahab stand side by side: living faith belongs to anyone who trusts God enough to act.",
                 {
                     {"Abraham's Costly Trust",
                      "Abraham's belief became visible when he held nothing back from the God who promised.",
                      {{"Genesis 15:6", "Abraham believed the Lord, and it was counted to him as righteousness."},
                       {"James 2:21-23", "His faith and his actions were working together."}}},
                     {"Rahab's Risky Welcome",
                      "A Canaanite woman with a ruined reputation showed her faith by sheltering the spies.",
                      {{"Joshua 2:11", "Rahab confesses that the Lord is God in heaven above and on earth below."},
                       {"Hebrews 11:31", "By faith Rahab did not perish, because she welcomed the spies in peace."},
                       {"James 2:26", "As the body without breath is dead, so faith without works is dead."}}},
                 }},
            },
        .id = "5A3C1E70-2B4D-4F61-9E8A-0D7C6B5A4F03",
    });

    definitions.push_back(SampleSermonDefinition{
        .title = "A Table in the Far Country",
        .series = "Stories Jesus Told",
        .focus = "The father runs to the son who left and goes out to the son who stayed: grace seeks both.",
        .notes =
            R"(Jesus told this story to a mixed crowd. Tax collectors and people with bad reputations had gathered close to listen, and religious leaders stood at the edge muttering, "This man welcomes sinners and eats with them." The story of the two sons is Jesus' answer to that complaint, and it has a word for everyone in the room — and for everyone in this room.

The younger son asks for his share of the inheritance while his father is still alive. In that culture the request was close to saying, "I wish you were dead." The father divides his property, and the son travels to a far country and spends everything. Then famine comes. The young man who once had servants ends up feeding pigs, so hungry that he envies what the animals eat. For a Jewish listener, it would be hard to imagine a lower place.

And there, Jesus says, "he came to himself." He remembers his father's house, where even the hired workers have more than enough. He rehearses a speech: "Father, I have sinned against heaven and against you. I am no longer worthy to be called your son; make me like one of your hired servants." It is an honest confession, though perhaps he still imagines he can work off his debt.

Now watch the father. "While he was still a long way off, his father saw him and was filled with compassion; he ran to his son, threw his arms around him and kissed him." Dignified older men did not run in that world. To run, the father would have had to gather up his robes and expose his legs in front of the whole village. He takes the shame on himself so that the son will not walk the gauntlet of the village alone. The son begins his speech, but the father does not let him finish the part about being a servant. Instead he calls for a robe, a ring, sandals and a feast. The boy is restored as a son, not hired as a worker.

But the story does not end there. The older brother comes in from the field, hears music, and refuses to go in. He has served faithfully for years and feels his obedience has gone unrewarded. And once again the father goes out. He pleads with the son who stayed just as he ran to the son who left. "My son, you are always with me, and everything I have is yours. But we had to celebrate."

Jesus leaves the story open. We never learn whether the older brother goes in to the feast. That is deliberate. The religious leaders listening were meant to see themselves at the edge of the party, and to hear the father's invitation.

Some of us are the younger son: we know we have wandered, and we wonder whether there is any way home. There is — the Father is already running. Some of us are the older son: we have stayed close, but our hearts have grown cold and resentful. The Father comes out to us too. The table is set. Will we come in?)",
        .images = {},
        .topics = {"The Son Who Left", "The Father Who Runs", "The Son Who Stayed"},
        .subtopicAngles = {"The journey", "The welcome"},
        .scriptures = {{"Luke", 15, 11, 32}, {"Romans", 5, 8, 8}, {"Isaiah", 55, 6, 7}},
        .authoredTopics =
            {
                {"The Son Who Left",
                 "The younger son's demand, his ruin in the far country and his return to himself.",
                 {
                     {"A Request That Wounds",
                      "Asking for the inheritance early treated the father as already gone.",
                      {{"Luke 15:11-13", "He gathered everything and travelled to a far country — distance chosen, "
                                         "not forced."},
                       {"Romans 3:23", "All have sinned; the far country is a place every heart knows."}}},
                     {"Coming to Himself",
                      "At the bottom the son remembers his father's house and rehearses an honest confession.",
                      {{"Luke 15:17-19", "Hunger brings clarity: even the hired workers at home have bread enough."},
                       {"Isaiah 55:6-7", "Let the wicked return to the Lord, for he will abundantly pardon."}}},
                 }},
                {"The Father Who Runs",
                 "The father sees from far off, runs, and restores the son before the speech is finished.",
                 {
                     {"Shame Taken On",
                      "Dignified men did not run; the father bears the village's gaze so his son need not.",
                      {{"Luke 15:20", "While he was still a long way off, his father saw him and ran."},
                       {"Romans 5:8", "God shows his love in this: while we were still sinners, Christ died for "
                                      "us."}}},
                     {"A Son, Not a Servant",
                      "Robe, ring, sandals and feast announce full restoration rather than probation.",
                      {{"Luke 15:22-24", "The lost is found and the dead is alive: the feast is the father's "
                                         "verdict."},
                       {"Zephaniah 3:17", "The Lord rejoices over his people with singing."}}},
                 }},
                {"The Son Who Stayed",
                 "The older brother's resentment and the father's second going out; the story is left open.",
                 {
                     {"Outside the Party",
                      "Faithful service can harden into a ledger of unrewarded obedience.",
                      {{"Luke 15:28-30", "He was angry and refused to go in — near the house but far from the "
                                         "heart."}}},
                     {"The Invitation Still Stands",
                      "The father pleads with the son who stayed as he ran to the son who left.",
                      {{"Luke 15:31-32", "'Everything I have is yours' — grace was on offer to him all along."},
                       {"Luke 15:1-2", "Jesus told the story to those who muttered that he welcomes sinners."}}},
                 }},
            },
        .id = "5A3C1E70-2B4D-4F61-9E8A-0D7C6B5A4F04",
    });

    return definitions;
}

} // namespace

const std::vector<SampleSermonDefinition>& sampleSermonDefinitions() {
    static const std::vector<SampleSermonDefinition> definitions = makeDefinitions();
    return definitions;
}

} // namespace quillon::store
